#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "webview2/page_backend.h"
#include "webview2/recorder_control.h"

namespace qv::devhost {

class CoreWebView;

/// What the host side has asked for and what the add-in has sent, for all web views of the process.
class Recorder final : public WebViewControl {
 public:
  struct Failure {
    CreationFailure how;
    HRESULT result;
  };
  struct ScriptResult {
    HRESULT result;
    std::wstring json;
  };

  [[nodiscard]] static Recorder& Get();

  /// Numbers the view and keeps it listed until `Remove`.
  [[nodiscard]] std::uint32_t Add(CoreWebView& view);
  void Remove(CoreWebView& view);
  void Record(std::uint32_t view, PageItemKind kind, std::wstring text);

  void FinishEvaluation(std::uint64_t evaluation, HRESULT result, std::wstring text);
  /// Every evaluation of the view that still runs ends with this result.
  void EndEvaluations(std::uint32_t view, HRESULT result);

  /// The failure set for the next creation of this kind, which is forgotten by asking.
  [[nodiscard]] std::optional<Failure> TakeFailure(CreationStep step);
  [[nodiscard]] std::optional<COREWEBVIEW2_WEB_ERROR_STATUS> TakeNavigationFailure();
  [[nodiscard]] ScriptResult ResultOf(const std::wstring& script) const;
  [[nodiscard]] DWORD Delay() const { return delay_; }

  std::uint32_t STDMETHODCALLTYPE ViewCount() override;
  bool STDMETHODCALLTYPE View(std::uint32_t index, ViewInfo* info) override;
  std::uint64_t STDMETHODCALLTYPE ItemCount() override;
  bool STDMETHODCALLTYPE Item(std::uint64_t index, PageItem* item) override;
  bool STDMETHODCALLTYPE PostPageString(std::uint32_t view, const wchar_t* text,
                                        const wchar_t* source) override;
  bool STDMETHODCALLTYPE PostPageJson(std::uint32_t view, const wchar_t* json,
                                      const wchar_t* source) override;
  void STDMETHODCALLTYPE SetScriptResult(const wchar_t* part, HRESULT result, const wchar_t* json) override;
  void STDMETHODCALLTYPE FailNext(CreationStep step, CreationFailure how, HRESULT result) override;
  void STDMETHODCALLTYPE FailNextNavigation(int errorStatus) override;
  void STDMETHODCALLTYPE SetDelay(DWORD milliseconds) override { delay_ = milliseconds; }
  void STDMETHODCALLTYPE ResetBehaviour() override;
  std::uint64_t STDMETHODCALLTYPE Evaluate(std::uint32_t view, const wchar_t* script) override;
  bool STDMETHODCALLTYPE TakeEvaluation(std::uint64_t number, Evaluation* evaluation) override;
  HWND STDMETHODCALLTYPE ViewWindow(std::uint32_t view) override;
  bool STDMETHODCALLTYPE CrashBrowser() override;
  bool STDMETHODCALLTYPE CrashPage(std::uint32_t view) override;
  std::uint32_t STDMETHODCALLTYPE LiveObjects() override;

 private:
  struct Recorded {
    PageItem item;
    std::wstring text;
  };

  struct Running {
    std::uint32_t view;
    HRESULT result = E_PENDING;
    std::wstring text{};
  };

  Recorder() = default;
  [[nodiscard]] CoreWebView* Find(std::uint32_t view) const;
  std::optional<Failure>& FailureSlot(CreationStep step);

  std::vector<CoreWebView*> views_;
  std::uint32_t lastView_ = 0;
  /// A deque: texts are handed out by pointer and must stay where they are.
  std::deque<Recorded> items_;
  std::vector<std::pair<std::wstring, ScriptResult>> scriptResults_;
  std::optional<Failure> environmentFailure_;
  std::optional<Failure> controllerFailure_;
  std::optional<COREWEBVIEW2_WEB_ERROR_STATUS> navigationFailure_;
  DWORD delay_ = 0;
  std::map<std::uint64_t, Running> evaluations_;
  std::uint64_t lastEvaluation_ = 0;
  std::wstring takenText_;
};

/// Whether the text is one complete JSON value.
[[nodiscard]] bool IsJson(const std::wstring& text);

}  // namespace qv::devhost
