#pragma once

#include <windows.h>

#include <oaidl.h>

#include <span>
#include <string_view>

#include "foundation/variant.h"

namespace qv {

/// Calls one member of an automation object by dispatch id. `flags` are DISPATCH_METHOD,
/// DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF or a combination; `args` stand in
/// natural order, the value of a property put last. The call uses the user's default locale. `result` may be
/// null; it is emptied before the call. When the object raises an exception the result is DISP_E_EXCEPTION
/// and `exceptionCode` (may be null) receives the exception's code; otherwise `exceptionCode` receives 0. A
/// null object gives E_POINTER. On the object's apartment.
[[nodiscard]] HRESULT InvokeDispId(IDispatch* object, DISPID id, WORD flags, std::span<const Variant> args,
                                   Variant* result, SCODE* exceptionCode = nullptr);

/// The same by name; the HRESULT of the failed name lookup when the object does not know the name.
[[nodiscard]] HRESULT InvokeMember(IDispatch* object, std::wstring_view name, WORD flags,
                                   std::span<const Variant> args, Variant* result,
                                   SCODE* exceptionCode = nullptr);

}  // namespace qv
