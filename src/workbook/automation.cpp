#include "workbook/automation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "foundation/dispatch.h"

namespace qv {
namespace {

std::int32_t TruncateReal(double value) {
  if (std::isnan(value)) return 0;
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(value, kLowest, kHighest));
}

/// Values that a host may want to hold on to rather than copy.
bool IsPutByReferenceFirst(VARTYPE type) {
  return type == VT_UNKNOWN || type == VT_DISPATCH || (type & (VT_ARRAY | VT_BYREF)) != 0;
}

bool IsObject(HRESULT hr, const Variant& value) {
  return SUCCEEDED(hr) && value.Type() == VT_DISPATCH && value->pdispVal != nullptr;
}

/// The object of a call's result, or null with the reason in `out`.
ComPtr<IDispatch> ObjectOf(const Variant& value, HostAnswer answer, HostAnswer* out) {
  ComPtr<IDispatch> object = answer.Ok() ? value.Object() : nullptr;
  if (object == nullptr && answer.Ok()) answer.hr = E_FAIL;
  if (out != nullptr) *out = answer;
  return object;
}

}  // namespace

std::int32_t IntegerOf(const Variant& value) {
  const VARIANT& raw = value.Get();
  switch (raw.vt) {
    case VT_I4:
    case VT_INT:
      return static_cast<std::int32_t>(raw.lVal);
    case VT_UI4:
    case VT_UINT:
      return static_cast<std::int32_t>(raw.ulVal);
    case VT_I8:
      return static_cast<std::int32_t>(raw.llVal);
    case VT_UI8:
      return static_cast<std::int32_t>(raw.ullVal);
    case VT_I2:
      return raw.iVal;
    case VT_R8:
      return TruncateReal(raw.dblVal);
    default:
      return 0;
  }
}

HRESULT GetProperty(IDispatch* object, std::wstring_view name, Variant& value, SCODE* exceptionCode) {
  return GetIndexedProperty(object, name, {}, value, exceptionCode);
}

HRESULT GetIndexedProperty(IDispatch* object, std::wstring_view name, std::span<const Variant> arguments,
                           Variant& value, SCODE* exceptionCode) {
  return InvokeMember(object, name, DISPATCH_PROPERTYGET, arguments, &value, exceptionCode);
}

ComPtr<IDispatch> GetDispProperty(IDispatch* object, std::wstring_view name, HostAnswer* answer) {
  Variant value;
  HostAnswer own;
  own.hr = GetProperty(object, name, value, &own.exceptionCode);
  return ObjectOf(value, own, answer);
}

std::wstring GetStringProperty(IDispatch* object, std::wstring_view name) {
  Variant value;
  return SUCCEEDED(GetProperty(object, name, value)) ? value.Text() : std::wstring();
}

std::optional<bool> GetFlagProperty(IDispatch* object, std::wstring_view name) {
  Variant value;
  if (FAILED(GetProperty(object, name, value)) || value.Type() != VT_BOOL) return std::nullopt;
  return value.IsTrue();
}

std::int32_t GetIntProperty(IDispatch* object, std::wstring_view name) {
  Variant value;
  return SUCCEEDED(GetProperty(object, name, value)) ? IntegerOf(value) : 0;
}

std::optional<double> GetNumberProperty(IDispatch* object, std::wstring_view name) {
  Variant value;
  if (FAILED(GetProperty(object, name, value))) return std::nullopt;
  switch (value.Type()) {
    case VT_R8:
      return value->dblVal;
    case VT_R4:
      return value->fltVal;
    case VT_I2:
    case VT_I4:
    case VT_INT:
      return IntegerOf(value);
    default:
      return std::nullopt;
  }
}

HRESULT PutDispProperty(IDispatch* object, std::wstring_view name, const Variant* value,
                        SCODE* exceptionCode) {
  if (exceptionCode != nullptr) *exceptionCode = 0;
  if (object == nullptr) return E_POINTER;
  if (value == nullptr) return E_INVALIDARG;
  const std::span<const Variant> arguments(value, 1);
  if (IsPutByReferenceFirst(value->Type())) {
    const HRESULT hr = InvokeMember(object, name, DISPATCH_PROPERTYPUTREF, arguments, nullptr, exceptionCode);
    if (SUCCEEDED(hr)) return hr;
  }
  return InvokeMember(object, name, DISPATCH_PROPERTYPUT, arguments, nullptr, exceptionCode);
}

HostAnswer PutProperty(IDispatch* object, std::wstring_view name, const Variant& value) {
  HostAnswer answer;
  answer.hr = PutDispProperty(object, name, &value, &answer.exceptionCode);
  return answer;
}

HRESULT InvokeByName(IDispatch* object, std::wstring_view name, std::span<const Variant> arguments,
                     Variant* result, SCODE* exceptionCode) {
  return InvokeMember(object, name, DISPATCH_METHOD, arguments, result, exceptionCode);
}

HRESULT GetItem(IDispatch* collection, std::span<const Variant> indexes, Variant& item,
                SCODE* exceptionCode) {
  HostAnswer refusal;
  refusal.hr =
      InvokeMember(collection, L"Item", DISPATCH_PROPERTYGET, indexes, &item, &refusal.exceptionCode);
  if (exceptionCode != nullptr) *exceptionCode = refusal.exceptionCode;
  if (IsObject(refusal.hr, item) || collection == nullptr) return refusal.hr;

  Variant value;
  SCODE code = 0;
  const auto found = [&](HRESULT hr) {
    if (IsObject(hr, value)) {
      item = std::move(value);
      return true;
    }
    if (const HostAnswer answer{hr, code}; answer.IsBusy() && !refusal.IsBusy()) refusal = answer;
    return false;
  };
  const auto byId = [&](WORD flags) {
    return found(InvokeDispId(collection, DISPID_VALUE, flags, indexes, &value, &code));
  };
  const bool named = refusal.hr != DISP_E_UNKNOWNNAME;
  const bool other =
      (named && found(InvokeMember(collection, L"Item", DISPATCH_METHOD, indexes, &value, &code))) ||
      byId(DISPATCH_PROPERTYGET) || byId(DISPATCH_METHOD);
  if (exceptionCode != nullptr) *exceptionCode = other ? 0 : refusal.exceptionCode;
  return other ? S_OK : refusal.hr;
}

ComPtr<IDispatch> GetCollectionItem(IDispatch* collection, const Variant& index, HostAnswer* answer) {
  Variant item;
  HostAnswer own;
  own.hr = GetItem(collection, {&index, 1}, item, &own.exceptionCode);
  return ObjectOf(item, own, answer);
}

ComPtr<IDispatch> GetCollectionItem(IDispatch* collection, std::wstring_view name, HostAnswer* answer) {
  return GetCollectionItem(collection, Variant(name), answer);
}

bool IsHostBusy(HRESULT hr, SCODE exceptionCode) {
  // Excel's own "ignored while a cell is edited", and COM's rejected and retry-later answers of a busy
  // apartment.
  constexpr std::array<HRESULT, 3> kBusy = {static_cast<HRESULT>(0x800AC472), RPC_E_CALL_REJECTED,
                                            RPC_E_SERVERCALL_RETRYLATER};
  return std::ranges::any_of(kBusy, [&](HRESULT busy) { return hr == busy || exceptionCode == busy; });
}

}  // namespace qv
