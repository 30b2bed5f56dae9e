#include "foundation/variant.h"

#include <new>

namespace qv {

Bstr::Bstr(std::wstring_view text) : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
  if (text_ == nullptr) throw std::bad_alloc();
}

BSTR* Bstr::Put() {
  SysFreeString(text_);
  text_ = nullptr;
  return &text_;
}

Variant::Variant(const VARIANT& other) {
  VariantInit(&value_);
  // The function only reads its source, though its declaration lacks the const.
  if (FAILED(VariantCopyInd(&value_, const_cast<VARIANT*>(&other)))) throw std::bad_alloc();
}

Variant::Variant(std::wstring_view text) : Variant() {
  value_.bstrVal = Bstr(text).Detach();
  value_.vt = VT_BSTR;
}

Variant::Variant(bool flag) : Variant() {
  value_.vt = VT_BOOL;
  value_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

Variant::Variant(long number) : Variant() {
  value_.vt = VT_I4;
  value_.lVal = number;
}

Variant::Variant(double number) : Variant() {
  value_.vt = VT_R8;
  value_.dblVal = number;
}

Variant::Variant(IDispatch* object) : Variant() {
  value_.vt = VT_DISPATCH;
  value_.pdispVal = ComPtr<IDispatch>(object).Detach();
}

Variant Variant::Short(short number) {
  Variant result;
  result.value_.vt = VT_I2;
  result.value_.iVal = number;
  return result;
}

Variant Variant::Missing() {
  Variant result;
  result.value_.vt = VT_ERROR;
  result.value_.scode = DISP_E_PARAMNOTFOUND;
  return result;
}

VARIANT* Variant::Put() {
  VariantClear(&value_);
  return &value_;
}

VARIANT Variant::Detach() {
  const VARIANT result = value_;
  VariantInit(&value_);
  return result;
}

std::wstring Variant::Text() const {
  if (!IsText() || value_.bstrVal == nullptr) return {};
  return {value_.bstrVal, SysStringLen(value_.bstrVal)};
}

ComPtr<IDispatch> Variant::Object() const {
  return value_.vt == VT_DISPATCH ? ComPtr<IDispatch>(value_.pdispVal) : ComPtr<IDispatch>();
}

}  // namespace qv
