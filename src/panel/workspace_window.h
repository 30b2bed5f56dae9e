#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/pane_context.h"
#include "panel/panel_frame.h"
#include "panel/panel_navigator.h"
#include "panel/web_view.h"

namespace qv {

/// What happens in the workspace window. UI thread.
class WorkspaceEvents {
 public:
  virtual ~WorkspaceEvents() = default;
  /// A message of the workspace page; from inside a browser event.
  virtual void OnWorkspaceMessage(const std::wstring& source, const std::optional<std::wstring>& text) = 0;
  /// The window's view has started.
  virtual void OnWorkspaceOpened() = 0;
  /// A page has taken over the other one's state; from inside a browser event.
  virtual void OnWorkspaceStateHanded() = 0;
  /// The window is gone, and its page with it.
  virtual void OnWorkspaceClosed() = 0;
};

/// A top-level window that shows the panel with more room, in the browser of its pane. The state of the
/// pane's page is handed to its first page, and handed back when it closes. UI thread, outside browser
/// events.
class WorkspaceWindow final : private PanelFrameEvents, private WebViewEvents {
 public:
  /// All outlive the window.
  WorkspaceWindow(PaneContext& context, WebView& paneView, WorkspaceEvents& events)
      : context_(context),
        paneView_(paneView),
        events_(events),
        view_(context, *this),
        navigator_(context, view_),
        frame_(*this) {}

  /// Opens or raises the window. A page (empty: the one that is shown, at first the root) is loaded when it
  /// is another one.
  void Open(std::wstring_view page);
  /// Raises the window, or opens it on no particular page.
  void Focus() { Open({}); }
  /// Hides the window, hands the state back and closes it then.
  void Close();
  /// Closes the window at once; nobody is told.
  void CloseNow();

  [[nodiscard]] bool IsOpen() const { return phase_ == Phase::kTaking || phase_ == Phase::kOpen; }

  /// The window's view; without a page while the window is closed.
  [[nodiscard]] WebView& View() { return view_; }

 private:
  /// What becomes of the pages' state.
  enum class Phase {
    kClosed,
    /// The first page has not taken over the pane's state yet.
    kTaking,
    kOpen,
    /// Closing: the workspace page is asked for its state.
    kReturning,
    /// The page or the browser is gone: the window goes too.
    kLost,
  };

  // PanelFrameEvents
  void OnFrameResized() override { view_.Fit(); }
  void OnFrameMoved() override { view_.FollowWindow(); }
  void OnFrameFocused() override { view_.Focus(); }
  void OnFrameClosing() override;
  void OnFrameTimer() override { FinishLater(); }
  void OnFrameDestroyed() override;

  // WebViewEvents
  void OnWebViewReady() override;
  void OnWebMessage(const std::wstring& source, const std::optional<std::wstring>& text) override {
    events_.OnWorkspaceMessage(source, text);
  }
  void OnNavigated() override;
  void OnNavigationFailed() override { navigator_.OnNavigationFailed(); }
  void OnWebViewFailed(const wchar_t* step, HRESULT hr) override;
  void OnBrowserLost() override { Lose(); }
  void OnPageLost() override { Lose(); }

  void OpenAnew(std::wstring_view page);
  void TakeState();
  void ReturnState(const std::optional<std::wstring>& state);
  void Lose();
  void FinishLater();
  void Finish();

  PaneContext& context_;
  WebView& paneView_;
  WorkspaceEvents& events_;
  WebView view_;
  PanelNavigator navigator_;
  PanelFrame frame_;
  Phase phase_ = Phase::kClosed;
  /// Counts the closings, so that an answer to one that was taken back is known.
  std::uint32_t closing_ = 0;
};

}  // namespace qv
