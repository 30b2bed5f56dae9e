#pragma once

#include <memory>
#include <string>

#include "webview2/chromium/frame_picture.h"
#include "webview2/chromium/navigation_tracker.h"
#include "webview2/chromium/page_input.h"
#include "webview2/chromium/page_link.h"
#include "webview2/page_backend.h"
#include "webview2/view_window.h"

namespace qv::devhost {

/// A page of a real browser behind one web view: shown in the view's window, used through its messages.
class ChromiumPage final : public PageBackend,
                           private NavigationReport,
                           private PageReceiver,
                           private ViewContent,
                           public std::enable_shared_from_this<ChromiumPage> {
 public:
  [[nodiscard]] static std::shared_ptr<ChromiumPage> Bind(std::shared_ptr<PageLink> link, PageEvents& events,
                                                          ViewWindow& window);
  ChromiumPage(std::shared_ptr<PageLink> link, PageEvents& events, ViewWindow& window);

  void Detach() override;
  void Navigate(std::uint64_t navigation, const std::wstring& uri) override;
  void ExecuteScript(const std::wstring& script, ScriptDone done) override;
  bool Evaluate(const std::wstring& script, ScriptDone done) override;
  void PostJson(const std::wstring& json) override;
  void SetBounds(const RECT& bounds) override;
  void SetVisible(bool visible) override;
  void SetBackground(COREWEBVIEW2_COLOR color) override;
  void SetScriptEnabled(bool enabled) override;
  bool CrashPage() override;

 private:
  std::uint64_t PageNavigates(const std::wstring& uri) override;
  void StopLoading() override;
  void DocumentChanged(const std::wstring& uri) override;
  void NavigationEnded(std::uint64_t navigation, bool success, COREWEBVIEW2_WEB_ERROR_STATUS status) override;

  void OnPageEvent(const std::string& method, const Json& parameters) override;
  void OnFrame() override;
  void OnBrowserLost() override;

  std::optional<LRESULT> OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

  void OnMessagePosted(const Json& parameters);
  void OnDialog(const Json& parameters);
  void OnCrashed();
  void UpdateScreencast();
  void StartScreencast();
  void CheckPicture(HWND window);
  /// Runs the script; `convert` makes the text of the answer.
  void Run(Json parameters, ScriptDone done, HRESULT (*convert)(const Json& answer, std::wstring& text));

  std::shared_ptr<PageLink> link_;
  /// Null once nothing may be reported any more.
  PageEvents* events_;
  ViewWindow* window_;
  NavigationTracker tracker_;
  PageInput input_;
  FramePainter painter_;
  SIZE size_{};
  bool visible_ = true;
  bool casting_ = false;
  bool crashed_ = false;
  /// The picture that is shown was asked for again.
  bool confirmed_ = false;
};

}  // namespace qv::devhost
