#include "foundation/dispatch.h"

#include <gtest/gtest.h>

#include "fake_object.h"

namespace qv {
namespace {

TEST(Dispatch, ArgumentsArriveInNaturalOrderAndTheResultComesBack) {
  const auto object = MakeCom<FakeObject>();
  FakeObject::Call seen;
  object->Add(L"Join", [&](FakeObject::Call& call) {
    seen = call;
    *call.result = Variant(call.args[0].Text() + call.args[1].Text()).Detach();
    return S_OK;
  });
  const Variant args[] = {Variant(L"a"), Variant(L"b")};
  Variant result(L"left over");
  EXPECT_EQ(InvokeMember(object.Get(), L"Join", DISPATCH_METHOD, args, &result), S_OK);
  EXPECT_EQ(result.Text(), L"ab");
  EXPECT_EQ(seen.flags, DISPATCH_METHOD);
  EXPECT_EQ(seen.locale, LCID{0x400});
  EXPECT_FALSE(seen.putNamed);
  EXPECT_EQ(InvokeDispId(object.Get(), 0, DISPATCH_METHOD, args, &result), S_OK);
  EXPECT_EQ(result.Text(), L"ab");
}

TEST(Dispatch, PropertyPutNamesItsValue) {
  const auto object = MakeCom<FakeObject>();
  std::vector<bool> named;
  object->Add(L"Value", [&](FakeObject::Call& call) {
    named.push_back(call.putNamed);
    return S_OK;
  });
  const Variant args[] = {Variant(1)};
  for (const WORD flags :
       std::initializer_list<WORD>{DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYGET})
    EXPECT_EQ(InvokeMember(object.Get(), L"Value", flags, args, nullptr), S_OK);
  EXPECT_EQ(named, (std::vector<bool>{true, true, false}));
}

TEST(Dispatch, ExceptionsGiveTheirCode) {
  struct Case {
    SCODE scode;
    WORD code;
    bool deferred;
    SCODE expected;
  };
  const Case cases[] = {
      {static_cast<SCODE>(0x800AC472), 0, false, static_cast<SCODE>(0x800AC472)},
      {0, 1004, false, static_cast<SCODE>(0x800405EC)},
      {0, 0, true, static_cast<SCODE>(0x800A03EC)},
      {0, 0, false, E_FAIL},
  };
  for (const Case& c : cases) {
    const auto object = MakeCom<FakeObject>();
    object->Add(L"Fail", [&](FakeObject::Call& call) {
      call.exception->scode = c.scode;
      call.exception->wCode = c.code;
      call.exception->bstrDescription = Bstr(L"text").Detach();
      if (c.deferred) {
        call.exception->pfnDeferredFillIn = [](EXCEPINFO* info) {
          info->scode = static_cast<SCODE>(0x800A03EC);
          return S_OK;
        };
      }
      return DISP_E_EXCEPTION;
    });
    SCODE code = 0;
    EXPECT_EQ(InvokeMember(object.Get(), L"Fail", DISPATCH_METHOD, {}, nullptr, &code), DISP_E_EXCEPTION);
    EXPECT_EQ(code, c.expected);
  }
}

TEST(Dispatch, UnknownNamesAndMissingObjectsLeaveAnEmptyResult) {
  const auto object = MakeCom<FakeObject>();
  Variant result(L"left over");
  SCODE code = 5;
  EXPECT_EQ(InvokeMember(object.Get(), L"None", DISPATCH_METHOD, {}, &result, &code), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(result.Type(), VT_EMPTY);
  EXPECT_EQ(code, 0);
  EXPECT_EQ(InvokeMember(nullptr, L"None", DISPATCH_METHOD, {}, nullptr), E_POINTER);
  EXPECT_EQ(InvokeDispId(nullptr, 0, DISPATCH_METHOD, {}, nullptr), E_POINTER);
}

TEST(Dispatch, TheObjectOutlivesACallThatDropsTheLastReference) {
  const long before = ModuleLocks::Count();
  auto object = MakeCom<FakeObject>();
  object->Add(L"Drop", [&](FakeObject::Call&) {
    object.Reset();
    return ModuleLocks::Count() == before + 1 ? S_OK : E_FAIL;
  });
  EXPECT_EQ(InvokeMember(object.Get(), L"Drop", DISPATCH_METHOD, {}, nullptr), S_OK);
  EXPECT_EQ(ModuleLocks::Count(), before);
}

}  // namespace
}  // namespace qv
