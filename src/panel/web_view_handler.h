#pragma once

#include <memory>
#include <utility>

#include "foundation/com_object.h"
#include "foundation/guard.h"
#include "foundation/variant.h"
#include "panel/web_view.h"

namespace qv {

/// A browser callback that leads to a static member of `WebView`. It holds the view weakly: after the view
/// has closed, `body` gets null and only has to dispose of what it was given.
template <typename Interface, typename First, typename Second>
class WebViewHandler final : public ComObject<Interface> {
 public:
  using Body = void (*)(WebView* view, First first, Second second);

  WebViewHandler(std::shared_ptr<WebViewLink> link, Body body) : link_(std::move(link)), body_(body) {}

  HRESULT STDMETHODCALLTYPE Invoke(First first, Second second) noexcept override {
    return GuardHr(L"WebViewHandler", [&] {
      body_(link_->view, first, second);
      return S_OK;
    });
  }

 private:
  std::shared_ptr<WebViewLink> link_;
  Body body_;
};

template <typename Interface, typename First, typename Second>
[[nodiscard]] ComPtr<Interface> MakeWebViewHandler(std::shared_ptr<WebViewLink> link,
                                                   void (*body)(WebView*, First, Second)) {
  return MakeCom<WebViewHandler<Interface, First, Second>>(std::move(link), body);
}

}  // namespace qv
