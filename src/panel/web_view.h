#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/pane_context.h"
#include "foundation/variant.h"
#include "panel/webview2_interfaces.h"

namespace qv {

/// What a web view reports. On the UI thread, from inside the browser's own events: nothing here may pump
/// messages or show a box.
class WebViewEvents {
 public:
  virtual ~WebViewEvents() = default;
  /// The view can navigate now.
  virtual void OnWebViewReady() = 0;
  /// A message of the page at address `source`; `text` is absent when the page posted anything but a string.
  virtual void OnWebMessage(const std::wstring& source, const std::optional<std::wstring>& text) = 0;
  /// A page was loaded.
  virtual void OnNavigated() = 0;
  /// A page could not be loaded. Not told of a load that was given up, as when another one takes its place.
  virtual void OnNavigationFailed() = 0;
  /// The start-up failed for good.
  virtual void OnWebViewFailed(const wchar_t* step, HRESULT hr) = 0;
  /// The browser is gone; the view is of no more use.
  virtual void OnBrowserLost() = 0;
  /// The page's process is gone; another load brings a new one.
  virtual void OnPageLost() = 0;
};

class WebView;

/// Through which the browser's callbacks find their view; emptied when the view closes, so that a callback
/// that comes later meets nothing.
struct WebViewLink {
  WebView* view = nullptr;
};

/// One browser view filling one window: starts the browser, loads pages, passes scripts and messages. UI
/// thread.
class WebView {
 public:
  /// Both outlive the view.
  WebView(PaneContext& context, WebViewEvents& events) : context_(context), events_(events) {}
  WebView(const WebView&) = delete;
  WebView& operator=(const WebView&) = delete;
  ~WebView() { Close(); }

  /// Receives the JSON text of a script's result, from inside a browser event.
  using ScriptDone = std::function<void(HRESULT result, const std::wstring& json)>;

  /// Starts the browser for the window; the outcome comes as an event.
  void Start(HWND window);
  /// The same in a browser that another view has started.
  void StartIn(ICoreWebView2Environment* environment, HWND window);

  /// The browser behind this view; null before it has started and after `Close`.
  [[nodiscard]] ICoreWebView2Environment* Environment() const { return environment_.Get(); }

  /// Whether the window that the view fills is still there.
  [[nodiscard]] bool HasWindow() const { return IsWindow(window_) != FALSE; }

  /// False until the view is ready and again after `Close`.
  [[nodiscard]] bool IsReady() const { return view_ != nullptr; }

  /// Loads an address; the outcome comes as an event. False when the load was not even begun.
  [[nodiscard]] bool Navigate(const std::wstring& url);

  /// Address of the page that is shown; empty without one.
  [[nodiscard]] std::wstring Source() const;

  // Ignored while there is no page.
  void ExecuteScript(const std::wstring& script);
  /// `done` is called later, or not at all when the view closes first. False when the script was not taken.
  [[nodiscard]] bool ExecuteScript(const std::wstring& script, ScriptDone done);
  void PostJson(const std::wstring& json);

  /// Fits the view to the client area of its window, unless that is empty, as when it is minimised.
  void Fit();
  /// Tells the browser when the window has moved on the screen, or its lists and menus would open at the old
  /// place.
  void FollowWindow();
  /// Gives the keyboard focus to the page.
  void Focus();

  /// Drops every callback and the browser's objects. May be called at any time outside of the view's own
  /// events, also before the start-up has ended; a closed view may be started again.
  void Close();

 private:
  static void OnEnvironmentCreated(WebView* view, HRESULT result, ICoreWebView2Environment* environment);
  static void OnControllerCreated(WebView* view, HRESULT result, ICoreWebView2Controller* controller);
  static void OnMessage(WebView* view, ICoreWebView2* sender, ICoreWebView2WebMessageReceivedEventArgs* args);
  static void OnNavigationStarting(WebView* view, ICoreWebView2* sender,
                                   ICoreWebView2NavigationStartingEventArgs* args);
  static void OnNavigationCompleted(WebView* view, ICoreWebView2* sender,
                                    ICoreWebView2NavigationCompletedEventArgs* args);

  static void OnProcessFailed(WebView* view, ICoreWebView2* sender,
                              ICoreWebView2ProcessFailedEventArgs* args);

  void CreateController();
  void SetUpController();
  void ApplySettings();
  void RegisterHandlers();
  void Log(std::wstring_view message, HRESULT hr) const;

  PaneContext& context_;
  WebViewEvents& events_;
  HWND window_ = nullptr;
  /// Where the window was on the screen at the last look.
  POINT place_{};
  std::shared_ptr<WebViewLink> link_;
  ComPtr<ICoreWebView2Environment> environment_;
  ComPtr<ICoreWebView2Controller> controller_;
  ComPtr<ICoreWebView2> view_;
};

}  // namespace qv
