#pragma once

#include "foundation/com_object.h"
#include "panel/webview2_interfaces.h"
#include "webview2/put_value.h"

namespace qv::devhost {

/// Remembers what was set. Only `IsWebMessageEnabled` has an effect here.
class ViewSettings final : public ComObject<ICoreWebView2Settings> {
 public:
  HRESULT STDMETHODCALLTYPE get_IsScriptEnabled(BOOL* value) noexcept override {
    return PutValue(value, isScriptEnabled_);
  }
  HRESULT STDMETHODCALLTYPE put_IsScriptEnabled(BOOL value) noexcept override {
    return PutValue(&isScriptEnabled_, value);
  }
  HRESULT STDMETHODCALLTYPE get_IsWebMessageEnabled(BOOL* value) noexcept override {
    return PutValue(value, isWebMessageEnabled_);
  }
  HRESULT STDMETHODCALLTYPE put_IsWebMessageEnabled(BOOL value) noexcept override {
    return PutValue(&isWebMessageEnabled_, value);
  }
  HRESULT STDMETHODCALLTYPE get_AreDefaultScriptDialogsEnabled(BOOL* value) noexcept override {
    return PutValue(value, areDefaultScriptDialogsEnabled_);
  }
  HRESULT STDMETHODCALLTYPE put_AreDefaultScriptDialogsEnabled(BOOL value) noexcept override {
    return PutValue(&areDefaultScriptDialogsEnabled_, value);
  }
  HRESULT STDMETHODCALLTYPE get_IsStatusBarEnabled(BOOL* value) noexcept override {
    return PutValue(value, isStatusBarEnabled_);
  }
  HRESULT STDMETHODCALLTYPE put_IsStatusBarEnabled(BOOL value) noexcept override {
    return PutValue(&isStatusBarEnabled_, value);
  }
  HRESULT STDMETHODCALLTYPE get_AreDevToolsEnabled(BOOL* value) noexcept override {
    return PutValue(value, areDevToolsEnabled_);
  }
  HRESULT STDMETHODCALLTYPE put_AreDevToolsEnabled(BOOL value) noexcept override {
    return PutValue(&areDevToolsEnabled_, value);
  }
  HRESULT STDMETHODCALLTYPE get_AreDefaultContextMenusEnabled(BOOL* value) noexcept override {
    return PutValue(value, areDefaultContextMenusEnabled_);
  }
  HRESULT STDMETHODCALLTYPE put_AreDefaultContextMenusEnabled(BOOL value) noexcept override {
    return PutValue(&areDefaultContextMenusEnabled_, value);
  }
  HRESULT STDMETHODCALLTYPE get_AreHostObjectsAllowed(BOOL* value) noexcept override {
    return PutValue(value, areHostObjectsAllowed_);
  }
  HRESULT STDMETHODCALLTYPE put_AreHostObjectsAllowed(BOOL value) noexcept override {
    return PutValue(&areHostObjectsAllowed_, value);
  }
  HRESULT STDMETHODCALLTYPE get_IsZoomControlEnabled(BOOL* value) noexcept override {
    return PutValue(value, isZoomControlEnabled_);
  }
  HRESULT STDMETHODCALLTYPE put_IsZoomControlEnabled(BOOL value) noexcept override {
    return PutValue(&isZoomControlEnabled_, value);
  }
  HRESULT STDMETHODCALLTYPE get_IsBuiltInErrorPageEnabled(BOOL* value) noexcept override {
    return PutValue(value, isBuiltInErrorPageEnabled_);
  }
  HRESULT STDMETHODCALLTYPE put_IsBuiltInErrorPageEnabled(BOOL value) noexcept override {
    return PutValue(&isBuiltInErrorPageEnabled_, value);
  }

 private:
  BOOL isScriptEnabled_ = TRUE;
  BOOL isWebMessageEnabled_ = TRUE;
  BOOL areDefaultScriptDialogsEnabled_ = TRUE;
  BOOL isStatusBarEnabled_ = TRUE;
  BOOL areDevToolsEnabled_ = TRUE;
  BOOL areDefaultContextMenusEnabled_ = TRUE;
  BOOL areHostObjectsAllowed_ = TRUE;
  BOOL isZoomControlEnabled_ = TRUE;
  BOOL isBuiltInErrorPageEnabled_ = TRUE;
};

}  // namespace qv::devhost
