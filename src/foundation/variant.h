#pragma once

// The automation header needs the base types first.
#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <string>
#include <string_view>
#include <utility>

namespace qv {

using Microsoft::WRL::ComPtr;

/// Owner of one BSTR.
class Bstr {
 public:
  Bstr() = default;
  /// Copies the text. Throws std::bad_alloc when there is no memory.
  explicit Bstr(std::wstring_view text);
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  Bstr& operator=(Bstr&& other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~Bstr() { SysFreeString(text_); }

  [[nodiscard]] BSTR Get() const { return text_; }
  /// For an out parameter; frees what is held.
  [[nodiscard]] BSTR* Put();
  /// Hands the string over to the caller.
  [[nodiscard]] BSTR Detach() { return std::exchange(text_, nullptr); }
  [[nodiscard]] std::wstring_view View() const { return {text_ ? text_ : L"", SysStringLen(text_)}; }

 private:
  BSTR text_ = nullptr;
};

/// Owner of one VARIANT.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  Variant(const Variant& other) : Variant(other.value_) {}
  Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
  /// Copies any VARIANT, a by-reference one by its target. Throws std::bad_alloc when the copy fails.
  explicit Variant(const VARIANT& other);
  explicit Variant(std::wstring_view text);
  explicit Variant(const wchar_t* text) : Variant(std::wstring_view(text)) {}
  explicit Variant(bool flag);
  explicit Variant(long number);
  explicit Variant(int number) : Variant(static_cast<long>(number)) {}
  explicit Variant(double number);
  /// Adds a reference; null gives a VT_DISPATCH holding null.
  explicit Variant(IDispatch* object);
  /// A VT_I2 number, for the few properties that want one.
  [[nodiscard]] static Variant Short(short number);
  /// The value that stands for an argument left out (VT_ERROR, DISP_E_PARAMNOTFOUND).
  [[nodiscard]] static Variant Missing();

  Variant& operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  [[nodiscard]] const VARIANT& Get() const { return value_; }
  [[nodiscard]] VARIANT& Get() { return value_; }
  [[nodiscard]] const VARIANT* operator->() const { return &value_; }
  /// For an out parameter; clears what is held.
  [[nodiscard]] VARIANT* Put();
  /// Hands the value over to the caller and becomes VT_EMPTY.
  [[nodiscard]] VARIANT Detach();

  [[nodiscard]] VARTYPE Type() const { return value_.vt; }
  [[nodiscard]] bool IsText() const { return value_.vt == VT_BSTR; }
  [[nodiscard]] bool IsArray() const { return (value_.vt & VT_ARRAY) != 0; }
  /// The text of a VT_BSTR, otherwise empty.
  [[nodiscard]] std::wstring Text() const;
  /// The object of a VT_DISPATCH (a new reference), otherwise null.
  [[nodiscard]] ComPtr<IDispatch> Object() const;
  /// True for a VT_BOOL that is not VARIANT_FALSE.
  [[nodiscard]] bool IsTrue() const { return value_.vt == VT_BOOL && value_.boolVal != VARIANT_FALSE; }

 private:
  VARIANT value_;
};

}  // namespace qv
