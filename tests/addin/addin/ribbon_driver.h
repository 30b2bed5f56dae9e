#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <span>
#include <string>
#include <utility>

#include "addin/office_interfaces.h"
#include "foundation/variant.h"
#include "host/host_dispatch.h"

namespace qv {

/// A control of the ribbon as the host passes it to callbacks.
class RibbonControl final : public devhost::HostDispatch<IRibbonControl> {
 public:
  RibbonControl(std::wstring id, std::wstring tag) : id_(std::move(id)), tag_(std::move(tag)) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept override {
    return DISP_E_MEMBERNOTFOUND;
  }
  HRESULT STDMETHODCALLTYPE get_Id(BSTR* id) noexcept override {
    *id = Bstr(id_).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Context(IDispatch** context) noexcept override {
    *context = nullptr;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Tag(BSTR* tag) noexcept override {
    *tag = Bstr(tag_).Detach();
    return S_OK;
  }

 private:
  std::wstring id_;
  std::wstring tag_;
};

/// The same for a host whose controls answer by name only.
class LateBoundRibbonControl final : public devhost::HostDispatch<IDispatch> {
 public:
  LateBoundRibbonControl(std::wstring id, std::wstring tag) : id_(std::move(id)), tag_(std::move(tag)) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                   UINT*) noexcept override {
    *result = Variant(id == kId ? id_ : tag_).Detach();
    return S_OK;
  }

 protected:
  std::span<const devhost::DispatchName> Names() const noexcept override {
    static constexpr devhost::DispatchName kNames[] = {{L"Id", kId}, {L"Tag", kTag}};
    return kNames;
  }

 private:
  static constexpr DISPID kId = 1;
  static constexpr DISPID kTag = 3;

  std::wstring id_;
  std::wstring tag_;
};

/// The host's ribbon, which only counts how often it was to fetch everything again.
class RibbonUi final : public devhost::HostDispatch<IRibbonUI> {
 public:
  explicit RibbonUi(std::function<void()> onInvalidate = {}) : onInvalidate_(std::move(onInvalidate)) {}

  [[nodiscard]] int Invalidations() const { return invalidations_; }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept override {
    return DISP_E_MEMBERNOTFOUND;
  }
  HRESULT STDMETHODCALLTYPE Invalidate() noexcept override {
    ++invalidations_;
    if (onInvalidate_) onInvalidate_();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE InvalidateControl(BSTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InvalidateControlMso(BSTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ActivateTab(BSTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ActivateTabMso(BSTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ActivateTabQ(BSTR, BSTR) noexcept override { return E_NOTIMPL; }

 private:
  std::function<void()> onInvalidate_;
  int invalidations_ = 0;
};

/// Calls ribbon callbacks the way a host does: by name, on the IDispatch of the ribbon interface, the control
/// as the last one of the reversed arguments.
class RibbonDriver {
 public:
  explicit RibbonDriver(IUnknown* addin) {
    ComPtr<IRibbonExtensibility> ribbon;
    EXPECT_EQ(addin->QueryInterface(IID_PPV_ARGS(&ribbon)), S_OK);
    EXPECT_EQ(ribbon.As(&callbacks_), S_OK);
  }

  HRESULT Find(std::wstring name, DISPID& id) const {
    LPOLESTR names = name.data();
    id = DISPID_UNKNOWN;
    return callbacks_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  }

  HRESULT Invoke(DISPID id, const Variant& argument, VARIANT* result) const {
    Variant copy = argument;
    return InvokeRaw(id, &copy.Get(), 1, result);
  }

  HRESULT InvokeRaw(DISPID id, VARIANT* arguments, UINT count, VARIANT* result) const {
    DISPPARAMS params{arguments, nullptr, count, 0};
    return callbacks_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, result, nullptr,
                              nullptr);
  }

  /// The answer of a callback that is found by name; VT_EMPTY after a failure.
  [[nodiscard]] Variant Ask(const wchar_t* callback, IDispatch* control) const {
    DISPID id = 0;
    EXPECT_EQ(Find(callback, id), S_OK);
    Variant result;
    EXPECT_EQ(Invoke(id, Variant(control), result.Put()), S_OK);
    return result;
  }

  /// A press of the button whose callback that is.
  void Press(const wchar_t* callback) const {
    const ComPtr<RibbonControl> control = MakeCom<RibbonControl>(L"button", L"");
    static_cast<void>(Ask(callback, control.Get()));
  }

  /// Lets go of the add-in, before it is released.
  void Reset() { callbacks_.Reset(); }

 private:
  ComPtr<IDispatch> callbacks_;
};

}  // namespace qv
