#pragma once

#include <oaidl.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/com_object.h"
#include "foundation/variant.h"

namespace qv::bench {

/// A worksheet's values in the shape in which a host answers "Value2". `valueOf` gives that of a 1-based row
/// and a 0-based column.
template <typename ValueOf>
[[nodiscard]] Variant NewValues(std::int32_t rows, std::int32_t columns, ValueOf valueOf) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}};
  Variant values;
  values.Get().parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  values.Get().vt = VT_ARRAY | VT_VARIANT;
  for (LONG row = 1; row <= rows; ++row) {
    for (LONG col = 1; col <= columns; ++col) {
      LONG position[] = {row, col};
      Variant value = valueOf(row, col - 1);
      static_cast<void>(SafeArrayPutElement(values->parray, position, &value.Get()));
    }
  }
  return values;
}

/// Lends the values' array as a host would give it, without a copy: while it is locked its receiver cannot
/// free it. Making and freeing the array are the host's work and count in neither pass.
class LentValues {
 public:
  explicit LentValues(const Variant& values) : array_(values->parray) { SafeArrayLock(array_); }
  LentValues(const LentValues&) = delete;
  LentValues& operator=(const LentValues&) = delete;
  ~LentValues() { SafeArrayUnlock(array_); }

  [[nodiscard]] Variant Lend() const {
    Variant value;
    value.Get().parray = array_;
    value.Get().vt = VT_ARRAY | VT_VARIANT;
    return value;
  }

 private:
  SAFEARRAY* array_;
};

/// An object that answers a few properties by name.
class BenchObject final : public ComObject<IDispatch> {
 public:
  using Getter = std::function<Variant()>;

  explicit BenchObject(std::vector<std::pair<std::wstring, Getter>> properties)
      : properties_(std::move(properties)) {}

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    const auto found =
        std::ranges::find(properties_, std::wstring(names[0]), &std::pair<std::wstring, Getter>::first);
    if (found == properties_.end()) return DISP_E_UNKNOWNNAME;
    *id = static_cast<DISPID>(found - properties_.begin()) + 1;
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                      UINT*) override {
    *result = properties_.at(static_cast<std::size_t>(id) - 1).second().Detach();
    return S_OK;
  }

 private:
  std::vector<std::pair<std::wstring, Getter>> properties_;
};

[[nodiscard]] inline ComPtr<IDispatch> NewObject(
    std::vector<std::pair<std::wstring, BenchObject::Getter>> properties) {
  return TakeReference<IDispatch>(new BenchObject(std::move(properties)));
}

[[nodiscard]] inline BenchObject::Getter Always(const Variant& value) {
  return [value] { return value; };
}

/// One SafeArrayGetElement and VariantClear a cell.
inline void BarePass(const Variant& values, std::int32_t rows, std::int32_t columns) {
  for (LONG row = 1; row <= rows; ++row) {
    for (LONG col = 1; col <= columns; ++col) {
      LONG position[] = {row, col};
      VARIANT element;
      VariantInit(&element);
      static_cast<void>(SafeArrayGetElement(values->parray, position, &element));
      static_cast<void>(VariantClear(&element));
    }
  }
}

}  // namespace qv::bench
