#pragma once

#include <atomic>
#include <string>

#include "foundation/com_object.h"
#include "panel/webview2_interfaces.h"
#include "webview2/task_text.h"

namespace qv::devhost {

class NavigationStartingArgs final : public ComObject<ICoreWebView2NavigationStartingEventArgs> {
 public:
  NavigationStartingArgs(UINT64 navigation, std::wstring uri)
      : navigation_(navigation), uri_(std::move(uri)) {}

  [[nodiscard]] bool IsCancelled() const { return cancelled_ != FALSE; }

  HRESULT STDMETHODCALLTYPE get_Uri(LPWSTR* value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_IsUserInitiated(BOOL* value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_IsRedirected(BOOL* value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_RequestHeaders(ICoreWebView2HttpRequestHeaders** value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_Cancel(BOOL* value) noexcept override;
  HRESULT STDMETHODCALLTYPE put_Cancel(BOOL value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_NavigationId(UINT64* value) noexcept override;

 private:
  UINT64 navigation_;
  std::wstring uri_;
  BOOL cancelled_ = FALSE;
};

class NavigationCompletedArgs final : public ComObject<ICoreWebView2NavigationCompletedEventArgs> {
 public:
  NavigationCompletedArgs(UINT64 navigation, bool success, COREWEBVIEW2_WEB_ERROR_STATUS status)
      : navigation_(navigation), success_(success), status_(status) {}

  HRESULT STDMETHODCALLTYPE get_IsSuccess(BOOL* value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_WebErrorStatus(COREWEBVIEW2_WEB_ERROR_STATUS* value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_NavigationId(UINT64* value) noexcept override;

 private:
  UINT64 navigation_;
  bool success_;
  COREWEBVIEW2_WEB_ERROR_STATUS status_;
};

/// Answers IUnknown only: handlers get the interface itself and never ask for it.
class ProcessFailedArgs final : public ICoreWebView2ProcessFailedEventArgs {
 public:
  explicit ProcessFailedArgs(COREWEBVIEW2_PROCESS_FAILED_KIND kind) : kind_(kind) { ModuleLocks::Add(); }
  ProcessFailedArgs(const ProcessFailedArgs&) = delete;
  ProcessFailedArgs& operator=(const ProcessFailedArgs&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override;
  HRESULT STDMETHODCALLTYPE get_ProcessFailedKind(COREWEBVIEW2_PROCESS_FAILED_KIND* value) noexcept override;

 private:
  ~ProcessFailedArgs() { ModuleLocks::Remove(); }

  COREWEBVIEW2_PROCESS_FAILED_KIND kind_;
  std::atomic<ULONG> references_{1};
};

/// A message of the page: `text` is the string itself when `isString`, otherwise JSON.
class WebMessageArgs final : public ComObject<ICoreWebView2WebMessageReceivedEventArgs> {
 public:
  WebMessageArgs(std::wstring source, std::wstring text, bool isString)
      : source_(std::move(source)), text_(std::move(text)), isString_(isString) {}

  HRESULT STDMETHODCALLTYPE get_Source(LPWSTR* value) noexcept override;
  HRESULT STDMETHODCALLTYPE get_WebMessageAsJson(LPWSTR* value) noexcept override;
  HRESULT STDMETHODCALLTYPE TryGetWebMessageAsString(LPWSTR* value) noexcept override;

 private:
  std::wstring source_;
  std::wstring text_;
  bool isString_;
};

}  // namespace qv::devhost
