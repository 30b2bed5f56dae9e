#include "engines/memory/range_object.h"
#include "late_bound.h"

namespace qv::devhost {
namespace {

using memory::kGeneralFailure;
using memory::kHostBusy;

TEST_F(MemoryEngineTest, FailsAMemberSoManyTimes) {
  engine.Fault({{"fail", "Range.Value2"}, {"code", "0x800A03EC"}, {"on", "put"}, {"times", 2}, {"after", 1}});
  EXPECT_HRESULT_SUCCEEDED(Put(Range("A1"), L"Value2", Variant(L"x")).hr);
  for (int i = 0; i < 2; ++i) {
    const Answer answer = Put(Range("A1"), L"Value2", Variant(L"y"));
    EXPECT_EQ(answer.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(answer.exception, kGeneralFailure);
  }
  EXPECT_EQ(Get(Range("A1"), L"Value2").value.Text(), L"x");
  EXPECT_HRESULT_SUCCEEDED(Put(Range("A1"), L"Value2", Variant(L"z")).hr);

  engine.Fault({{"fail", "*.RowHeight"}, {"code", "0x80004005"}});
  EXPECT_EQ(Get(Range("A1"), L"RowHeight").hr, E_FAIL);
  engine.Fault({{"clear", true}});
  EXPECT_HRESULT_SUCCEEDED(Get(Range("A1"), L"RowHeight").hr);
}

TEST_F(MemoryEngineTest, IsBusyInThreeWays) {
  engine.Fault({{"busy", 1}});
  EXPECT_EQ(Get(Range("A1"), L"Value2").exception, kHostBusy);
  engine.Fault({{"busy", 1}, {"way", "rejected"}});
  EXPECT_EQ(Get(Range("A1"), L"Value2").hr, RPC_E_CALL_REJECTED);
  engine.Fault({{"busy", 1}, {"way", "retry"}, {"member", "Range.Value2"}});
  EXPECT_HRESULT_SUCCEEDED(Get(Range("A1"), L"Text").hr);
  EXPECT_EQ(Get(Range("A1"), L"Value2").hr, static_cast<HRESULT>(0x8001010A));
  EXPECT_HRESULT_SUCCEEDED(Get(Range("A1"), L"Value2").hr);
}

TEST_F(MemoryEngineTest, HidesMembers) {
  engine.Fault({{"missing", {"Range.Characters", "Worksheet.ProtectContents"}}});
  EXPECT_EQ(Get(Range("A1"), L"Characters").hr, DISP_E_UNKNOWNNAME);
  EXPECT_EQ(Get(engine.SheetObject(), L"ProtectContents").hr, DISP_E_UNKNOWNNAME);
}

TEST_F(MemoryEngineTest, GivesItemsInOneFormOnly) {
  const ComPtr<IDispatch> sheets = Follow(Application(), {L"ActiveWorkbook", L"Worksheets"});
  const auto asDefault = [&](WORD flags) {
    Variant one(1);
    DISPPARAMS params{&one.Get(), nullptr, 1, 0};
    Variant item;
    const HRESULT hr =
        sheets->Invoke(DISPID_VALUE, IID_NULL, 0, flags, &params, item.Put(), nullptr, nullptr);
    return SUCCEEDED(hr) && item.Object() != nullptr;
  };
  struct Case {
    const char* form;
    bool property;
    bool method;
    bool byDefault;
  };
  for (const Case& each : {Case{"every", true, false, true}, Case{"property", true, false, false},
                           Case{"method", false, true, false}, Case{"default", false, false, true}}) {
    engine.Fault({{"item", each.form}});
    EXPECT_EQ(SUCCEEDED(Get(sheets, L"Item", {Variant(1)}).hr), each.property) << each.form;
    EXPECT_EQ(SUCCEEDED(CallMethod(sheets, L"Item", {Variant(1)}).hr), each.method) << each.form;
    EXPECT_EQ(asDefault(DISPATCH_PROPERTYGET), each.byDefault) << each.form;
  }
}

TEST_F(MemoryEngineTest, FailsBulkReadsAndRefusesTheTypedRange) {
  engine.Fault({{"bulkValue2", 1}, {"typedRange", false}});
  EXPECT_EQ(Get(Range("A1:B2"), L"Value2").exception, kGeneralFailure);
  EXPECT_HRESULT_SUCCEEDED(Get(Range("A1:B2"), L"Value2").hr);
  ComPtr<IDispatch> typed;
  EXPECT_EQ(Range("A1")->QueryInterface(memory::kRangeIid, reinterpret_cast<void**>(typed.GetAddressOf())),
            E_NOINTERFACE);
}

TEST_F(MemoryEngineTest, AnswersArraysAsTheOtherHostMay) {
  engine.Merge(L"", "A1:B1");
  engine.Fault({{"arrayAnswers", true}});
  EXPECT_TRUE(Get(Range("A1:C1"), L"MergeCells").value.IsArray());
  EXPECT_TRUE(Get(Range("A1:C1"), L"HasFormula").value.IsArray());
  EXPECT_EQ(Get(Range("C1"), L"MergeCells").value.Type(), VT_BOOL);
}

TEST_F(MemoryEngineTest, RunsACallbackInTheMiddleOfACall) {
  const auto second = engine.AddWindow(workbook);
  int calls = 0;
  engine.Faults().OnCall("Range.Value2", [&] {
    ++calls;
    engine.CloseWindow(second);
    engine.Faults().Clear();
  });
  EXPECT_HRESULT_SUCCEEDED(Get(Range("A1"), L"Value2").hr);
  EXPECT_HRESULT_SUCCEEDED(Get(Range("A1"), L"Value2").hr);
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(second->closed);
}

TEST_F(MemoryEngineTest, RefusesABadFaultAsAWhole) {
  for (const char* text :
       {R"({})", R"([1])", R"({"nonsense":1})", R"({"typedRange":false,"nonsense":1})",
        R"({"fail":"Range.Row","code":"abc"})", R"({"item":"some"})", R"({"way":"retry"})"}) {
    EXPECT_THROW(engine.Fault(nlohmann::json::parse(text)), std::runtime_error) << text;
  }
  EXPECT_TRUE(engine.Host().typedRange);
}

TEST(MemoryEngineAsWps, IntroducesItselfAndGivesErrorsAsIntegers) {
  MemoryEngine engine(HostStyle::kWps);
  engine.AddWorkbook(L"Book.xlsx");
  engine.Set(L"", "A1", memory::ErrorValue{2015});
  const ComPtr<IDispatch> application = engine.Application();
  EXPECT_NE(Get(application, L"Name").value.Text().find(L"WPS"), std::wstring::npos);
  EXPECT_EQ(Get(application, L"Version").value.Text(), L"12.0");
  const Variant error = Get(engine.RangeObject(L"", "A1"), L"Value2").value;
  EXPECT_EQ(error.Type(), VT_I4);
  EXPECT_EQ(error->lVal, -2146826273);
}

}  // namespace
}  // namespace qv::devhost
