#pragma once

#include <gtest/gtest.h>
#include <oaidl.h>

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engines/memory/memory_engine.h"
#include "foundation/variant.h"

namespace qv::devhost {

/// What one late-bound call gave.
struct Answer {
  HRESULT hr = S_OK;
  /// EXCEPINFO's code of a DISP_E_EXCEPTION.
  SCODE exception = 0;
  Variant value;
};

/// Calls a member by name as a late-bound caller does; arguments in natural order, a put's value last.
[[nodiscard]] inline Answer CallByName(const ComPtr<IDispatch>& object, std::wstring name, WORD flags,
                                       const std::vector<Variant>& args = {}) {
  Answer answer;
  LPOLESTR names = name.data();
  DISPID id = DISPID_UNKNOWN;
  answer.hr = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(answer.hr)) return answer;
  std::vector<VARIANT> reversed;
  for (auto arg = args.rbegin(); arg != args.rend(); ++arg)
    reversed.push_back(arg->Get());
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  if (flags == DISPATCH_PROPERTYPUT) {
    params.rgdispidNamedArgs = &put;
    params.cNamedArgs = 1;
  }
  EXCEPINFO exception{};
  answer.hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, answer.value.Put(),
                             &exception, nullptr);
  answer.exception = exception.scode;
  for (BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) {
    Variant owner;
    owner.Put()->vt = VT_BSTR;
    owner.Get().bstrVal = text;
  }
  return answer;
}

[[nodiscard]] inline Answer Get(const ComPtr<IDispatch>& object, const wchar_t* name,
                                const std::vector<Variant>& args = {}) {
  return CallByName(object, name, DISPATCH_PROPERTYGET, args);
}

[[nodiscard]] inline Answer Put(const ComPtr<IDispatch>& object, const wchar_t* name, Variant value) {
  return CallByName(object, name, DISPATCH_PROPERTYPUT, {std::move(value)});
}

[[nodiscard]] inline Answer CallMethod(const ComPtr<IDispatch>& object, const wchar_t* name,
                                       const std::vector<Variant>& args = {}) {
  return CallByName(object, name, DISPATCH_METHOD, args);
}

/// The object that a chain of argument-free properties leads to.
[[nodiscard]] inline ComPtr<IDispatch> Follow(ComPtr<IDispatch> object,
                                              const std::vector<const wchar_t*>& names) {
  for (const wchar_t* name : names) {
    object = Get(object, name).value.Object();
    if (object == nullptr) return nullptr;
  }
  return object;
}

/// An engine with one workbook, "Book.xlsx", with the sheet "Data".
class MemoryEngineTest : public ::testing::Test {
 protected:
  MemoryEngineTest() : workbook(engine.AddWorkbook(L"Book.xlsx", L"C:\\Books", {L"Data"})) {}

  ComPtr<IDispatch> Range(const char* address) { return engine.RangeObject(L"", address); }
  ComPtr<IDispatch> Application() { return engine.Application(); }

  MemoryEngine engine;
  std::shared_ptr<memory::Workbook> workbook;
};

}  // namespace qv::devhost
