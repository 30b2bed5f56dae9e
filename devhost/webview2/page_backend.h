#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "panel/webview2_interfaces.h"

namespace qv::devhost {

class ViewWindow;

/// What a page tells its web view. Always called later, on the web view's thread. Each call may close the web
/// view, and with it detach the backend that calls.
class PageEvents {
 public:
  /// The page began to navigate by itself (a link, a script, a reload). The number of this navigation, or 0
  /// when a handler refuses it.
  [[nodiscard]] virtual std::uint64_t NavigationBegun(const std::wstring& uri) = 0;
  /// The document at `uri` is the current one from now on.
  virtual void SourceChanged(const std::wstring& uri) = 0;
  /// The navigation with this number ended.
  virtual void NavigationFinished(std::uint64_t navigation, bool success,
                                  COREWEBVIEW2_WEB_ERROR_STATUS status) = 0;
  /// The page posted a string.
  virtual void StringReceived(const std::wstring& source, const std::wstring& text) = 0;
  /// The page posted anything else, given as JSON text.
  virtual void JsonReceived(const std::wstring& source, const std::wstring& json) = 0;
  /// The page's process ended unexpectedly; a navigation starts a new one.
  virtual void PageProcessLost() = 0;
  /// The browser's process ended unexpectedly. Nothing can come after this; the backend is detached.
  virtual void BrowserProcessLost() = 0;

 protected:
  ~PageEvents() = default;
};

/// What stands behind one web view: nothing but answers (the recorder) or a browser.
class PageBackend {
 public:
  /// Receives the HRESULT and the text of a script's result.
  using ScriptDone = std::function<void(HRESULT, const std::wstring&)>;

  virtual ~PageBackend() = default;
  /// The web view closes: nothing is reported afterwards, and what waits for a result waits in vain.
  virtual void Detach() = 0;
  virtual void Navigate(std::uint64_t navigation, const std::wstring& uri) = 0;
  /// `done` gets JSON text, "null" for undefined and for an exception.
  virtual void ExecuteScript(const std::wstring& script, ScriptDone done) = 0;
  /// Like `ExecuteScript`, for the host: waits for a promise and tells an exception. False without a page.
  [[nodiscard]] virtual bool Evaluate(const std::wstring& script, ScriptDone done) = 0;
  virtual void PostJson(const std::wstring& json) = 0;
  virtual void SetBounds(const RECT& bounds) = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual void SetBackground(COREWEBVIEW2_COLOR color) = 0;
  /// Whether documents that are loaded from now on may run scripts of their own.
  virtual void SetScriptEnabled(bool enabled) = 0;
  /// Crashes the page's process. False without a page.
  [[nodiscard]] virtual bool CrashPage() = 0;
};

/// Puts a prepared page behind a web view. Called at most once.
using BindPage = std::function<std::shared_ptr<PageBackend>(PageEvents&, ViewWindow&)>;

/// Where the pages of one environment come from. Use it on the environment's thread.
class PageSource {
 public:
  /// Receives S_OK with a page, or why there is none.
  using PageReady = std::function<void(HRESULT, BindPage)>;

  virtual ~PageSource() = default;
  /// Prepares a page; `ready` is called later. An HRESULT that says why not when it cannot even begin.
  [[nodiscard]] virtual HRESULT PreparePage(PageReady ready) = 0;
};

}  // namespace qv::devhost
