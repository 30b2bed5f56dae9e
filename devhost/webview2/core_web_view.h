#pragma once

#include <map>
#include <memory>
#include <string>

#include "webview2/completion_queue.h"
#include "webview2/core_web_view_stubs.h"
#include "webview2/event_list.h"
#include "webview2/page_backend.h"
#include "webview2/recorder_control.h"
#include "webview2/view_settings.h"

namespace qv::devhost {

/// The page side of one web view: what the add-in sees. What happens behind it is the backend's business.
/// Every member refuses a foreign thread with RPC_E_WRONG_THREAD and a closed view with ERROR_INVALID_STATE,
/// as the real one does.
class CoreWebView final : public CoreWebViewStubs, private PageEvents {
 public:
  CoreWebView(std::shared_ptr<CompletionQueue> queue, HWND parent, std::wstring userDataFolder);
  /// Puts the page behind the view and the window, which must stay until `Close`. Once, before anything else.
  void Bind(const BindPage& bind, ViewWindow& window);

  [[nodiscard]] std::uint32_t Number() const { return number_; }
  [[nodiscard]] bool IsClosed() const { return backend_ == nullptr; }
  [[nodiscard]] PageBackend* Backend() const { return backend_.get(); }
  [[nodiscard]] ViewInfo Describe() const;
  /// Null when the view is closed or its window was destroyed.
  [[nodiscard]] HWND Window() const;

  /// Drops handlers, waiting scripts and the backend at once. Harmless when repeated.
  void Close();
  /// Runs the host's script under this number of the `Recorder`. False without a page.
  [[nodiscard]] bool Evaluate(std::uint64_t evaluation, const std::wstring& script);
  /// Hands a message of the page to the handlers later; a null source stands for the current address.
  void DeliverLater(std::wstring text, bool isString, const wchar_t* source);

  /// What the controller knows, kept here for `Describe`.
  struct Appearance {
    bool visible = true;
    RECT bounds{};
    COREWEBVIEW2_COLOR background{255, 255, 255, 255};
  };
  [[nodiscard]] Appearance& Look() { return appearance_; }
  void SetParent(HWND parent) { parent_ = parent; }

  HRESULT STDMETHODCALLTYPE get_Settings(ICoreWebView2Settings** value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Source(LPWSTR* value) noexcept override;
  HRESULT STDMETHODCALLTYPE Navigate(LPCWSTR uri) noexcept override;
  HRESULT STDMETHODCALLTYPE add_NavigationStarting(ICoreWebView2NavigationStartingEventHandler* handler,
                                                   EventRegistrationToken* token) noexcept override;
  HRESULT STDMETHODCALLTYPE remove_NavigationStarting(EventRegistrationToken token) noexcept override;
  HRESULT STDMETHODCALLTYPE add_NavigationCompleted(ICoreWebView2NavigationCompletedEventHandler* handler,
                                                    EventRegistrationToken* token) noexcept override;
  HRESULT STDMETHODCALLTYPE remove_NavigationCompleted(EventRegistrationToken token) noexcept override;
  HRESULT STDMETHODCALLTYPE
  ExecuteScript(LPCWSTR script, ICoreWebView2ExecuteScriptCompletedHandler* handler) noexcept override;
  HRESULT STDMETHODCALLTYPE PostWebMessageAsJson(LPCWSTR json) noexcept override;
  HRESULT STDMETHODCALLTYPE add_WebMessageReceived(ICoreWebView2WebMessageReceivedEventHandler* handler,
                                                   EventRegistrationToken* token) noexcept override;
  HRESULT STDMETHODCALLTYPE remove_WebMessageReceived(EventRegistrationToken token) noexcept override;
  HRESULT STDMETHODCALLTYPE add_ProcessFailed(ICoreWebView2ProcessFailedEventHandler* handler,
                                              EventRegistrationToken* token) noexcept override;
  HRESULT STDMETHODCALLTYPE remove_ProcessFailed(EventRegistrationToken token) noexcept override;

 private:
  ~CoreWebView() override;

  std::uint64_t NavigationBegun(const std::wstring& uri) override;
  void SourceChanged(const std::wstring& uri) override;
  void NavigationFinished(std::uint64_t navigation, bool success,
                          COREWEBVIEW2_WEB_ERROR_STATUS status) override;
  void StringReceived(const std::wstring& source, const std::wstring& text) override;
  void JsonReceived(const std::wstring& source, const std::wstring& json) override;
  void PageProcessLost() override;
  void BrowserProcessLost() override;

  template <typename Body>
  [[nodiscard]] HRESULT WhileOpen(Body&& body) noexcept;
  void StartNavigation(std::uint64_t navigation, const std::wstring& uri);
  [[nodiscard]] bool AnnounceNavigation(std::uint64_t navigation, const std::wstring& uri);
  void CompleteNavigation(std::uint64_t navigation, bool success, COREWEBVIEW2_WEB_ERROR_STATUS status);
  void FinishScript(std::uint64_t script, HRESULT result, const std::wstring& json);
  void Receive(const std::wstring& source, const std::wstring& text, bool isString);
  void DropBackend();
  void FailWaiting(COREWEBVIEW2_PROCESS_FAILED_KIND kind);
  [[nodiscard]] bool AreMessagesEnabled() const;

  std::shared_ptr<CompletionQueue> queue_;
  HWND parent_;
  std::wstring userDataFolder_;
  std::wstring source_ = L"about:blank";
  ComPtr<ViewSettings> settings_;
  Appearance appearance_;
  EventList<ICoreWebView2NavigationStartingEventHandler> navigationStarting_;
  EventList<ICoreWebView2NavigationCompletedEventHandler> navigationCompleted_;
  EventList<ICoreWebView2WebMessageReceivedEventHandler> webMessageReceived_;
  EventList<ICoreWebView2ProcessFailedEventHandler> processFailed_;
  /// The navigation that is under way, 0 for none; a newer one cancels it.
  std::uint64_t pendingNavigation_ = 0;
  std::uint64_t lastNavigation_ = 0;
  std::map<std::uint64_t, ComPtr<ICoreWebView2ExecuteScriptCompletedHandler>> pendingScripts_;
  std::uint64_t lastScript_ = 0;
  std::shared_ptr<PageBackend> backend_;
  ViewWindow* window_ = nullptr;
  std::uint32_t number_;
};

}  // namespace qv::devhost
