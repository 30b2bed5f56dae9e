#include "host/ribbon_objects.h"

#include <array>

#include "engines/common/com_guard.h"

namespace qv::devhost {
namespace {

// Dispatch ids of the members, as Office publishes them.
constexpr DISPID kId = 1;
constexpr DISPID kContext = 2;
constexpr DISPID kTag = 3;
constexpr std::array<DispatchName, 3> kControlNames = {
    {{L"Id", kId}, {L"Context", kContext}, {L"Tag", kTag}}};

constexpr DISPID kInvalidate = 1;
constexpr DISPID kInvalidateControl = 2;
constexpr std::array<DispatchName, 2> kUiNames = {
    {{L"Invalidate", kInvalidate}, {L"InvalidateControl", kInvalidateControl}}};

HRESULT ReturnText(const std::wstring& text, BSTR* result) {
  if (result == nullptr) return E_POINTER;
  return GuardCom([&] { return *result = Bstr(text).Detach(), S_OK; });
}

}  // namespace

std::span<const DispatchName> RibbonControl::Names() const noexcept {
  return kControlNames;
}

HRESULT RibbonControl::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                              UINT*) noexcept {
  if ((flags & DISPATCH_PROPERTYGET) == 0 || id < kId || id > kTag) return DISP_E_MEMBERNOTFOUND;
  if (result == nullptr) return E_POINTER;
  return GuardCom([&] {
    *result = (id == kContext ? Variant(context_.Get()) : Variant(id == kId ? id_ : tag_)).Detach();
    return S_OK;
  });
}

HRESULT RibbonControl::get_Id(BSTR* id) noexcept {
  return ReturnText(id_, id);
}

HRESULT RibbonControl::get_Tag(BSTR* tag) noexcept {
  return ReturnText(tag_, tag);
}

HRESULT RibbonControl::get_Context(IDispatch** context) noexcept {
  if (context == nullptr) return E_POINTER;
  *context = ComPtr<IDispatch>(context_).Detach();
  return S_OK;
}

std::span<const DispatchName> RibbonUi::Names() const noexcept {
  return kUiNames;
}

HRESULT RibbonUi::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                         UINT*) noexcept {
  if ((flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  if (id == kInvalidate) return Invalidate();
  if (id != kInvalidateControl) return DISP_E_MEMBERNOTFOUND;
  if (arguments == nullptr || arguments->cArgs != 1) return DISP_E_BADPARAMCOUNT;
  return GuardCom([&] { return Tell(Variant(arguments->rgvarg[0]).Text()); });
}

HRESULT RibbonUi::Tell(std::wstring_view id) noexcept {
  return GuardCom([&] {
    if (!invalidated_) return E_FAIL;
    invalidated_(std::wstring(id));
    return S_OK;
  });
}

HRESULT RibbonUi::Invalidate() noexcept {
  return Tell({});
}

HRESULT RibbonUi::InvalidateControl(BSTR controlId) noexcept {
  return SysStringLen(controlId) == 0 ? E_INVALIDARG : Tell({controlId, SysStringLen(controlId)});
}

// The host's own controls and tabs: there are none.
HRESULT RibbonUi::InvalidateControlMso(BSTR) noexcept {
  return E_INVALIDARG;
}

HRESULT RibbonUi::ActivateTab(BSTR) noexcept {
  // The add-in's tab is the only one and always in front.
  return invalidated_ ? S_OK : E_FAIL;
}

HRESULT RibbonUi::ActivateTabMso(BSTR) noexcept {
  return E_INVALIDARG;
}

HRESULT RibbonUi::ActivateTabQ(BSTR, BSTR) noexcept {
  return E_INVALIDARG;
}

}  // namespace qv::devhost
