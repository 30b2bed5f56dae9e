#include "host/web_view_library.h"

#include <stdexcept>

#include "foundation/text.h"

namespace qv::devhost {

WebViewLibrary::WebViewLibrary(const std::wstring& folder) {
  const std::wstring path = folder + L"\\WebView2Loader.dll";
  library_.Reset(LoadLibraryW(path.c_str()));
  if (!library_) throw std::runtime_error(ToUtf8(path) + " cannot be loaded");
  if (const auto control = Export<WebViewControlFunction>(kWebViewControlExport)) {
    control_ = control(kWebViewControlVersion);
  }
  if (control_ == nullptr) throw std::runtime_error(ToUtf8(path) + " is not the stand-in of this build");
}

std::vector<ViewInfo> WebViewLibrary::ViewsIn(HWND frame) const {
  std::vector<ViewInfo> views;
  ViewInfo info{};
  for (std::uint32_t i = 0; control_->View(i, &info); ++i) {
    if (info.parent == frame || IsChild(frame, info.parent)) views.push_back(info);
  }
  return views;
}

}  // namespace qv::devhost
