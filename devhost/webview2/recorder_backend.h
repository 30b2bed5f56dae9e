#pragma once

#include <memory>

#include "webview2/completion_queue.h"
#include "webview2/page_backend.h"

namespace qv::devhost {

/// No page at all: every navigation succeeds and every script answers "null", unless the `Recorder` was told
/// otherwise. Its processes can be lost all the same.
class RecorderBackend final : public PageBackend {
 public:
  RecorderBackend(PageEvents& events, std::shared_ptr<CompletionQueue> queue);

  void Detach() override { alive_.reset(); }
  void Navigate(std::uint64_t navigation, const std::wstring& uri) override;
  void ExecuteScript(const std::wstring& script, ScriptDone done) override;
  bool Evaluate(const std::wstring&, ScriptDone) override { return false; }
  void PostJson(const std::wstring&) override {}
  void SetBounds(const RECT&) override {}
  void SetVisible(bool) override {}
  void SetBackground(COREWEBVIEW2_COLOR) override {}
  void SetScriptEnabled(bool) override {}
  bool CrashPage() override;
  /// As when the browser behind all views dies.
  void CrashBrowser();

 private:
  PageEvents& events_;
  std::shared_ptr<CompletionQueue> queue_;
  /// Expires with the web view; waiting completions look at it first.
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

/// Pages that are there at once.
class RecorderSource final : public PageSource {
 public:
  explicit RecorderSource(std::shared_ptr<CompletionQueue> queue) : queue_(std::move(queue)) {}

  HRESULT PreparePage(PageReady ready) override;

 private:
  std::shared_ptr<CompletionQueue> queue_;
};

}  // namespace qv::devhost
