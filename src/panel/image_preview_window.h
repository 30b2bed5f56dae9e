#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/pane_context.h"
#include "panel/image_preview_page.h"
#include "panel/panel_frame.h"
#include "panel/web_view.h"

namespace qv {

/// A top-level window that shows one picture large, in the browser of its pane. Its page is a temporary file
/// of ours and has no say in the add-in. UI thread, outside browser events.
class ImagePreviewWindow final : private PanelFrameEvents, private WebViewEvents {
 public:
  /// Both outlive the window.
  ImagePreviewWindow(PaneContext& context, WebView& paneView)
      : context_(context), paneView_(paneView), view_(context, *this), frame_(*this) {}
  ~ImagePreviewWindow() override { Close(); }

  /// Shows the picture, in place of the one that is shown. Without a picture nothing changes.
  void Open(const ImagePreview& preview);
  /// Closes the window and deletes its temporary file.
  void Close();

 private:
  // PanelFrameEvents
  void OnFrameResized() override { view_.Fit(); }
  void OnFrameFocused() override { view_.Focus(); }
  void OnFrameMoved() override { view_.FollowWindow(); }
  void OnFrameClosing() override { CloseLater(); }
  void OnFrameDestroyed() override { view_.Close(); }

  // WebViewEvents
  void OnWebViewReady() override { static_cast<void>(view_.Navigate(address_)); }
  void OnWebMessage(const std::wstring&, const std::optional<std::wstring>&) override {}
  void OnNavigated() override {}
  void OnNavigationFailed() override {}
  void OnWebViewFailed(const wchar_t* step, HRESULT hr) override;
  void OnBrowserLost() override { CloseLater(); }
  void OnPageLost() override { CloseLater(); }

  [[nodiscard]] bool WritePage(const std::string& page);
  void Show(const std::wstring& title);
  void CloseLater();

  PaneContext& context_;
  WebView& paneView_;
  WebView view_;
  PanelFrame frame_;
  /// Path of the temporary file and its address; empty while there is none.
  std::wstring file_;
  std::wstring address_;
  /// Counts the pictures, so that a late closing does not hit the next one.
  std::uint32_t shown_ = 0;
};

}  // namespace qv
