#pragma once

#include <string>
#include <vector>

#include "foundation/unique_handle.h"
#include "panel/webview2_interfaces.h"
#include "webview2/recorder_control.h"

namespace qv::devhost {

/// The web view stand-in, loaded from where the add-in will look for it, so that both see the same one.
class WebViewLibrary {
 public:
  /// Throws std::runtime_error when WebView2Loader.dll is not in the folder or is not the stand-in of this
  /// build.
  explicit WebViewLibrary(const std::wstring& folder);

  [[nodiscard]] WebViewControl& Control() const { return *control_; }

  /// An export of the library, cast to its type; null when there is none.
  template <typename Function>
  [[nodiscard]] Function Export(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library_.Get(), name)));
  }

  /// Live web views whose window lies in `frame` or is it.
  [[nodiscard]] std::vector<ViewInfo> ViewsIn(HWND frame) const;

 private:
  UniqueModule library_;
  WebViewControl* control_ = nullptr;
};

}  // namespace qv::devhost
