#pragma once

#include <oaidl.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "foundation/variant.h"

namespace qv {

// Late-bound calls on the host's objects: members by name, LOCALE_USER_DEFAULT, never a type library. Host UI
// thread only. A failed call gives the empty result and is not logged here. Memory shortage throws.

/// Whether a failure means that the host is busy now (a cell is being edited, a dialog is up) and may be
/// asked again later.
[[nodiscard]] bool IsHostBusy(HRESULT hr, SCODE exceptionCode);

/// How the host answered one call or a short series of them.
struct HostAnswer {
  HRESULT hr = S_OK;
  /// EXCEPINFO's code when hr is DISP_E_EXCEPTION, else 0.
  SCODE exceptionCode = 0;

  [[nodiscard]] bool Ok() const { return SUCCEEDED(hr); }
  /// The host cannot do it now, but may later.
  [[nodiscard]] bool IsBusy() const { return !Ok() && IsHostBusy(hr, exceptionCode); }
};

/// The object of a property, or null. `answer` (may be null) receives why; E_FAIL where the host gave
/// something else.
[[nodiscard]] ComPtr<IDispatch> GetDispProperty(IDispatch* object, std::wstring_view name,
                                                HostAnswer* answer = nullptr);

/// The text of a VT_BSTR property; empty for every other type.
[[nodiscard]] std::wstring GetStringProperty(IDispatch* object, std::wstring_view name);

/// The low 32 bits of an integer property, a real number truncated toward zero; otherwise 0.
[[nodiscard]] std::int32_t GetIntProperty(IDispatch* object, std::wstring_view name);

/// The value of a boolean property; nothing when it cannot be read or is no boolean.
[[nodiscard]] std::optional<bool> GetFlagProperty(IDispatch* object, std::wstring_view name);

/// The value of a real or signed integer property; nothing when it cannot be read or is of another type.
[[nodiscard]] std::optional<double> GetNumberProperty(IDispatch* object, std::wstring_view name);

/// The integer in a value, by the rules of `GetIntProperty`.
[[nodiscard]] std::int32_t IntegerOf(const Variant& value);

/// A property's value, S_OK and the value on success.
[[nodiscard]] HRESULT GetProperty(IDispatch* object, std::wstring_view name, Variant& value,
                                  SCODE* exceptionCode = nullptr);

/// A property with arguments in natural order, such as Cells(row, column).
[[nodiscard]] HRESULT GetIndexedProperty(IDispatch* object, std::wstring_view name,
                                         std::span<const Variant> arguments, Variant& value,
                                         SCODE* exceptionCode = nullptr);

/// Sets a property; objects, arrays and by-reference values are put by reference first. E_POINTER for a null
/// object, E_INVALIDARG for a null value. `exceptionCode` receives EXCEPINFO's code of a DISP_E_EXCEPTION.
[[nodiscard]] HRESULT PutDispProperty(IDispatch* object, std::wstring_view name, const Variant* value,
                                      SCODE* exceptionCode = nullptr);

/// The same with the whole answer.
[[nodiscard]] HostAnswer PutProperty(IDispatch* object, std::wstring_view name, const Variant& value);

/// Calls a method with 0 to 3 arguments in natural order.
[[nodiscard]] HRESULT InvokeByName(IDispatch* object, std::wstring_view name,
                                   std::span<const Variant> arguments, Variant* result,
                                   SCODE* exceptionCode = nullptr);

/// The object that a collection's "Item" gives for its indexes. Hosts differ in how they expose it: property,
/// then method, then the default member the same way; the first object wins. Without one a busy answer of any
/// of the calls, else the answer of the first: a failure, or success with a value that is no object.
[[nodiscard]] HRESULT GetItem(IDispatch* collection, std::span<const Variant> indexes, Variant& item,
                              SCODE* exceptionCode = nullptr);

/// An item of a host collection by 1-based number or by name, or null; `answer` as of `GetDispProperty`.
[[nodiscard]] ComPtr<IDispatch> GetCollectionItem(IDispatch* collection, const Variant& index,
                                                  HostAnswer* answer = nullptr);
[[nodiscard]] ComPtr<IDispatch> GetCollectionItem(IDispatch* collection, std::wstring_view name,
                                                  HostAnswer* answer = nullptr);

}  // namespace qv
