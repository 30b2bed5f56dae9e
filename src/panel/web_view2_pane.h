#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/access_tokens.h"
#include "foundation/pane_context.h"
#include "panel/agent_services.h"
#include "panel/app_events.h"
#include "panel/image_preview_window.h"
#include "panel/ole_control.h"
#include "panel/pane_actions.h"
#include "panel/pane_window.h"
#include "panel/panel_bridge.h"
#include "panel/panel_navigator.h"
#include "panel/web_view.h"
#include "panel/workspace_window.h"
#include "tools/image_translation.h"
#include "tools/workbook_tools.h"
#include "translation/quick_translate_worker.h"
#include "translation/run_controller.h"
#include "translation/selection_preview_reader.h"
#include "translation/translation_session.h"
#include "workbook/target_context.h"

namespace qv {

/// The task-pane control: one window, one web view, and everything that works for the page in it. Created by
/// the host through its ProgID; finds its host in the process's session. Host UI thread.
class CWebView2Pane final : public OleControl,
                            private PaneWindowEvents,
                            private WebViewEvents,
                            private WorkspaceEvents {
 public:
  CWebView2Pane();

  /// Second step of the creation: announces the pane and subscribes to the host's events.
  void FinalConstruct();

  /// Ends everything that touches the host, once: the run, the event subscription, the automation references.
  /// The page stays until the host closes the control.
  void BeginShutdownEarly();

  /// 1-based, unique within the process.
  [[nodiscard]] int Number() const { return context_->Number(); }
  /// The pane works on this window and its workbook from now on.
  void PinTarget(ExcelWindow target) { target_.Pin(std::move(target)); }

  /// Loads a page; while the browser starts, the page and its mode are kept for later.
  void NavigateToPage(std::wstring_view page, std::wstring_view mode);
  [[nodiscard]] const std::wstring& CurrentPage() const { return navigator_.CurrentPage(); }
  /// Whether this page is loaded and can be told another mode.
  [[nodiscard]] bool IsShowing(std::wstring_view page) const { return navigator_.IsShowing(page); }
  /// Tells the loaded page its mode, "full" or "selection".
  void SetPanelMode(std::wstring_view mode);
  /// Ignored while there is no page.
  void PostPanelJson(const std::wstring& json) { bridge_.PostPanelJson(json); }

  /// The browser could not be started, which this pane does not try again.
  [[nodiscard]] bool HasFailed() const { return failed_; }
  /// The control is closed or being closed for good.
  [[nodiscard]] bool IsClosing() const { return context_->IsClosing(); }

 private:
  ~CWebView2Pane() override;

  // OleControl
  HWND ControlWindow() const override { return window_.Handle(); }
  void OnVerb(LONG verb, HWND parent) override;
  bool ShowControlWindow(const wchar_t* operation, HWND parent, const RECT& position) override;
  void PlaceControlWindow(HWND parent, const RECT& position) override;
  void HideControlWindow() override { window_.Hide(); }
  void OnClose() override;

  // PaneWindowEvents
  void OnWindowCreated(HWND window, HWND parent) override;
  void OnWindowResized() override { view_.Fit(); }
  void OnWindowFocused() override { view_.Focus(); }
  void OnWindowTimer(UINT_PTR timer) override;
  void OnWindowTask(LPARAM task) override;
  void OnWindowDestroyed() override;

  // WebViewEvents
  void OnWebViewReady() override { navigator_.OnViewReady(); }
  void OnWebMessage(const std::wstring& source, const std::optional<std::wstring>& text) override;
  void OnNavigated() override;
  void OnNavigationFailed() override { navigator_.OnNavigationFailed(); }
  void OnWebViewFailed(const wchar_t* step, HRESULT hr) override;
  void OnBrowserLost() override;
  void OnPageLost() override;

  // WorkspaceEvents
  void OnWorkspaceMessage(const std::wstring& source, const std::optional<std::wstring>& text) override;
  void OnWorkspaceOpened() override;
  void OnWorkspaceStateHanded() override { bridge_.SendAccessTokenToPanel(); }
  void OnWorkspaceClosed() override;

  [[nodiscard]] bool CreateControlWindow(const wchar_t* operation, HWND parent, const RECT& position);
  void OnHostEvent(const HostEvent& event);
  void OnWidthTick();
  /// The page shows what is selected, and no run is busy with it.
  [[nodiscard]] bool WantsSelectionPreview() const;
  /// The selection, or what it holds, has changed.
  void AwaitSelectionAtRest();
  void OnPreviewTick();
  /// Everything but the window goes; it may be on its way out itself.
  void Shutdown();
  void Log(std::wstring_view message, HRESULT hr) const;

  std::shared_ptr<PaneContext> context_;
  AccessTokens tokens_;
  TargetContext target_;
  TranslationSession session_;
  WebView view_;
  WorkspaceWindow workspace_;
  ImagePreviewWindow preview_;
  PanelNavigator navigator_;
  PanelBridge bridge_;
  RunController run_;
  QuickTranslator quickTranslator_;
  SelectionPreviewReader selectionPreview_;
  WorkbookTools tools_;
  ImageTranslation images_;
  AgentServices agents_;
  PaneActions actions_;
  AppEvents hostEvents_;
  PaneWindow window_;
  bool earlyShutdownDone_ = false;
  bool failed_ = false;
  bool widthTickPosted_ = false;
};

}  // namespace qv
