#include "workbook/automation.h"

#include <cmath>

#include "addin/workbook/workbook_fixture.h"
#include "foundation/com_object.h"
#include "workbook/host_state.h"

namespace qv::test {
namespace {

using devhost::memory::ItemForm;
using devhost::memory::kHostBusy;
using devhost::memory::kOnPut;
using devhost::memory::MemberFault;

class Automation : public WorkbookTest {};

Variant OfType(VARTYPE type, LONGLONG bits) {
  Variant value;
  value.Get().vt = type;
  value.Get().llVal = bits;
  return value;
}

TEST_F(Automation, IntegersKeepTheirLowBitsAndRealsAreTruncated) {
  struct Case {
    Variant value;
    std::int32_t number;
  };
  const Case cases[] = {
      {Variant(7), 7},
      {OfType(VT_UI4, 0xFFFFFFFF), -1},
      {OfType(VT_I8, 0x100000005), 5},
      {OfType(VT_UI8, 0x1FFFFFFFF), -1},
      {OfType(VT_INT, -3), -3},
      {OfType(VT_UINT, 3), 3},
      {Variant::Short(-2), -2},
      {Variant(2.9), 2},
      {Variant(-2.9), -2},
      {Variant(std::nan("")), 0},
      {Variant(L"12"), 0},
      {Variant(true), 0},
      {OfType(VT_UI1, 9), 0},
      {Variant(), 0},
  };
  for (const Case& c : cases)
    EXPECT_EQ(IntegerOf(c.value), c.number) << "type " << c.value.Type();
}

TEST_F(Automation, AnAbsentOrWronglyTypedMemberReadsAsEmpty) {
  IDispatch* const app = engine.Application();
  EXPECT_EQ(GetStringProperty(app, L"Name"), L"Microsoft Excel");
  EXPECT_EQ(GetDispProperty(app, L"Name"), nullptr);
  EXPECT_EQ(GetStringProperty(app, L"ActiveSheet"), L"");
  EXPECT_EQ(GetIntProperty(app, L"NoSuchMember"), 0);
  EXPECT_EQ(GetDispProperty(nullptr, L"ActiveSheet"), nullptr);
}

TEST_F(Automation, ItemsAreFoundInWhicheverFormTheHostOffersThem) {
  for (const ItemForm form :
       {ItemForm::kEvery, ItemForm::kPropertyOnly, ItemForm::kMethodOnly, ItemForm::kDefaultOnly}) {
    engine.Faults().SetItemForm("*", form);
    const ComPtr<IDispatch> sheets =
        GetDispProperty(GetDispProperty(engine.Application(), L"ActiveWorkbook").Get(), L"Worksheets");
    EXPECT_EQ(GetStringProperty(GetCollectionItem(sheets.Get(), Variant(2)).Get(), L"Name"), L"Data");
    EXPECT_EQ(GetStringProperty(GetCollectionItem(sheets.Get(), L"Sheet1").Get(), L"Name"), L"Sheet1");
    EXPECT_EQ(GetCollectionItem(sheets.Get(), Variant(3)), nullptr);
    engine.Faults().Clear();
  }
}

TEST_F(Automation, AnItemThatIsMissingIsToldFromOneThatABusyHostRefuses) {
  const ComPtr<IDispatch> sheets =
      GetDispProperty(GetDispProperty(engine.Application(), L"ActiveWorkbook").Get(), L"Worksheets");
  HostAnswer answer;
  EXPECT_EQ(GetCollectionItem(sheets.Get(), L"Nowhere", &answer), nullptr);
  EXPECT_FALSE(answer.Ok());
  EXPECT_FALSE(answer.IsBusy());
  // The property by name is refused, or only the default member after it.
  for (const long after : {0L, 1L}) {
    engine.Faults().Fail(
        {.member = "Worksheets.*", .error = {DISP_E_EXCEPTION, kHostBusy}, .times = 1, .after = after});
    EXPECT_EQ(GetCollectionItem(sheets.Get(), L"Nowhere", &answer), nullptr);
    EXPECT_TRUE(answer.IsBusy()) << after;
    EXPECT_EQ(answer.exceptionCode, kHostBusy) << after;
    engine.Faults().Clear();
  }
  EXPECT_NE(GetCollectionItem(sheets.Get(), L"Data", &answer), nullptr);
  EXPECT_TRUE(answer.Ok());
}

/// Remembers how each put arrived and fails those by reference.
class PutRecorder final : public ComObject<IDispatch> {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* id) override {
    *id = 5;
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    kinds.push_back(flags);
    return flags == DISPATCH_PROPERTYPUTREF ? DISP_E_MEMBERNOTFOUND : S_OK;
  }
  std::vector<WORD> kinds;
};

TEST_F(Automation, OnlyObjectsAndArraysArePutByReferenceFirst) {
  auto* const recorder = new PutRecorder;
  ComPtr<IDispatch> object;
  object.Attach(recorder);
  const Variant number(1);
  EXPECT_EQ(PutDispProperty(object.Get(), L"X", &number), S_OK);
  EXPECT_EQ(recorder->kinds, std::vector<WORD>{DISPATCH_PROPERTYPUT});
  recorder->kinds.clear();
  const Variant dispatch(engine.Application());
  EXPECT_EQ(PutDispProperty(object.Get(), L"X", &dispatch), S_OK);
  EXPECT_EQ(recorder->kinds, (std::vector<WORD>{DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT}));
  EXPECT_EQ(PutDispProperty(nullptr, L"X", nullptr), E_POINTER);
  EXPECT_EQ(PutDispProperty(object.Get(), L"X", nullptr), E_INVALIDARG);
}

TEST_F(Automation, BusyIsToldFromRefused) {
  EXPECT_TRUE(IsHostBusy(DISP_E_EXCEPTION, static_cast<SCODE>(0x800AC472)));
  EXPECT_TRUE(IsHostBusy(static_cast<HRESULT>(0x80010001), 0));
  EXPECT_TRUE(IsHostBusy(static_cast<HRESULT>(0x8001010A), 0));
  EXPECT_FALSE(IsHostBusy(DISP_E_EXCEPTION, static_cast<SCODE>(0x800A03EC)));
  EXPECT_FALSE(IsHostBusy(S_OK, 0));
}

TEST_F(Automation, AlertsAreSwitchedOffAndPutBack) {
  {
    const DisplayAlertsGuard guard(engine.Application());
    EXPECT_FALSE(engine.Host().displayAlerts);
  }
  EXPECT_TRUE(engine.Host().displayAlerts);
  engine.Host().displayAlerts = false;
  { const DisplayAlertsGuard guard(engine.Application()); }
  EXPECT_FALSE(engine.Host().displayAlerts);
  engine.Host().displayAlerts = true;
}

TEST_F(Automation, AlertsOfAHostThatHidesThemAreLeftAlone) {
  engine.Faults().Fail({.member = "Application.DisplayAlerts", .on = devhost::memory::kOnGet});
  const DisplayAlertsGuard guard(engine.Application());
  EXPECT_TRUE(engine.Host().displayAlerts);
}

/// The next puts of a switch are refused by a busy host.
void RefusePuts(devhost::MemoryEngine& engine, const char* member, long times) {
  engine.Faults().Fail(
      {.member = member, .error = {DISP_E_EXCEPTION, kHostBusy}, .times = times, .on = kOnPut});
}

TEST_F(Automation, AlertsThatABusyHostKeepsOffAreOwedTheirFormerValue) {
  const auto endBusy = [this] {
    const DisplayAlertsGuard guard(engine.Application());
    RefusePuts(engine, "Application.DisplayAlerts", 1);
  };
  endBusy();
  EXPECT_FALSE(engine.Host().displayAlerts);
  endBusy();
  EXPECT_FALSE(engine.Host().displayAlerts) << "owed a second time";
  {
    // Its own former value is the "off" of the guard around it, which takes the debt over.
    const DisplayAlertsGuard outer(engine.Application());
    { const DisplayAlertsGuard inner(engine.Application()); }
    EXPECT_FALSE(engine.Host().displayAlerts);
  }
  EXPECT_TRUE(engine.Host().displayAlerts);
  EXPECT_TRUE(RestoreOwedHostState(engine.Application()));
}

TEST_F(Automation, WhatIsOwedIsPutBackOnceTheHostTakesIt) {
  {
    const DisplayAlertsGuard alertsOff(engine.Application());
    const ScreenUpdatingGuard screenOff(engine.Application());
    EXPECT_FALSE(engine.Host().screenUpdating);
    RefusePuts(engine, "Application.*", 3);
  }
  EXPECT_FALSE(RestoreOwedHostState(engine.Application())) << "the alerts are refused once more";
  EXPECT_FALSE(engine.Host().displayAlerts);
  EXPECT_TRUE(engine.Host().screenUpdating);
  EXPECT_TRUE(RestoreOwedHostState(engine.Application()));
  EXPECT_TRUE(engine.Host().displayAlerts);

  engine.Host().displayAlerts = false;
  EXPECT_TRUE(RestoreOwedHostState(engine.Application()));
  EXPECT_FALSE(engine.Host().displayAlerts) << "paid once only";
  engine.Host().displayAlerts = true;
}

TEST_F(Automation, AScreenThatCouldNotBeSwitchedOnIsOwed) {
  {
    const ScreenUpdatingGuard screenOff(engine.Application());
    RefusePuts(engine, "Application.ScreenUpdating", 2);
  }
  // A guard whose own "off" is refused still ends the one before.
  { const ScreenUpdatingGuard next(engine.Application()); }
  EXPECT_TRUE(engine.Host().screenUpdating);

  EXPECT_TRUE(SetScreenUpdating(engine.Application(), false));
  RefusePuts(engine, "Application.ScreenUpdating", 1);
  RestoreScreenUpdating(engine.Application());
  EXPECT_FALSE(engine.Host().screenUpdating);
  EXPECT_TRUE(RestoreOwedHostState(engine.Application()));
  EXPECT_TRUE(engine.Host().screenUpdating);
}

TEST_F(Automation, ScreenUpdatingIsSwitched) {
  EXPECT_TRUE(SetScreenUpdating(engine.Application(), false));
  EXPECT_FALSE(engine.Host().screenUpdating);
  RestoreScreenUpdating(engine.Application());
  EXPECT_TRUE(engine.Host().screenUpdating);
  EXPECT_FALSE(SetScreenUpdating(nullptr, true));
}

}  // namespace
}  // namespace qv::test
