#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

#include "panel/webview2_interfaces.h"

namespace qv::devhost {

/// What a page tells its web view. Always called later, on the web view's thread.
class PageEvents {
 public:
  /// The navigation with this number ended; on success the page at `uri` is the current one.
  virtual void NavigationFinished(std::uint64_t navigation, const std::wstring& uri, bool success,
                                  COREWEBVIEW2_WEB_ERROR_STATUS status) = 0;
  /// The page posted a string.
  virtual void StringReceived(const std::wstring& source, const std::wstring& text) = 0;
  /// The page posted anything else, given as JSON text.
  virtual void JsonReceived(const std::wstring& source, const std::wstring& json) = 0;

 protected:
  ~PageEvents() = default;
};

/// What stands behind one web view: nothing but answers (the recorder) or a browser. Destroyed when the web
/// view closes; nothing is reported afterwards.
class PageBackend {
 public:
  /// Receives the HRESULT and the JSON text of a script's result.
  using ScriptDone = std::function<void(HRESULT, const std::wstring&)>;

  virtual ~PageBackend() = default;
  virtual void Navigate(std::uint64_t navigation, const std::wstring& uri) = 0;
  virtual void ExecuteScript(const std::wstring& script, ScriptDone done) = 0;
  virtual void PostJson(const std::wstring& json) = 0;
  virtual void SetBounds(const RECT& bounds) = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual void SetBackground(COREWEBVIEW2_COLOR color) = 0;
};

}  // namespace qv::devhost
