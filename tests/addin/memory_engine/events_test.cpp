#include <ocidl.h>
#include <olectl.h>

#include <functional>

#include "late_bound.h"

namespace qv::devhost {
namespace {

/// A sink that keeps each event's number and, by the mapping that is right for named and positional
/// arguments, its arguments in declared order.
class Sink final : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
                       (answersEvents && IsEqualIID(iid, kAppEventsIid));
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // Lives on the test's stack.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    events.push_back(id);
    named = params->cNamedArgs;
    args.assign(params->cArgs, Variant());
    for (UINT i = 0; i < params->cArgs; ++i) {
      const UINT number =
          i < params->cNamedArgs ? static_cast<UINT>(params->rgdispidNamedArgs[i]) : params->cArgs - 1 - i;
      args.at(number) = Variant(params->rgvarg[i]);
      if (cancels && params->rgvarg[i].vt == (VT_BYREF | VT_BOOL)) *params->rgvarg[i].pboolVal = VARIANT_TRUE;
    }
    if (onEvent) onEvent();
    return S_OK;
  }

  bool answersEvents = true;
  std::vector<DISPID> events;
  std::vector<Variant> args;
  UINT named = 0;
  bool cancels = false;
  std::function<void()> onEvent;
};

class Events : public MemoryEngineTest {
 protected:
  // The engine outlives the sink, so nothing of it may stay connected.
  void TearDown() override {
    const ComPtr<IConnectionPoint> point = Point();
    if (point != nullptr) static_cast<void>(point->Unadvise(cookie));
    EXPECT_EQ(engine.Counters().at("sinks"), 0);
  }

  ComPtr<IConnectionPoint> Point() {
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> point;
    EXPECT_HRESULT_SUCCEEDED(Application().As(&container));
    if (FAILED(container->FindConnectionPoint(kAppEventsIid, point.GetAddressOf()))) return nullptr;
    return point;
  }

  Sink sink;
  DWORD cookie = 0;
};

TEST_F(Events, ArriveInDeclaredOrderInBothStyles) {
  ASSERT_HRESULT_SUCCEEDED(Point()->Advise(&sink, &cookie));
  for (const EventStyle style : {EventStyle::kNamed, EventStyle::kPositional}) {
    engine.SetEventStyle(style);
    engine.Select(L"Data", style == EventStyle::kNamed ? "B2:C3" : "D4");
    ASSERT_EQ(sink.events.back(), static_cast<DISPID>(AppEvent::kSheetSelectionChange));
    EXPECT_EQ(sink.named, style == EventStyle::kNamed ? 2u : 0u);
    ASSERT_EQ(sink.args.size(), 2u);
    EXPECT_EQ(Get(sink.args[0].Object(), L"Name").value.Text(), L"Data");
    EXPECT_EQ(Get(sink.args[1].Object(), L"Row").value->lVal, style == EventStyle::kNamed ? 2 : 4);
  }
  ASSERT_HRESULT_SUCCEEDED(Point()->Unadvise(cookie));
  sink.args.clear();
  EXPECT_EQ(engine.LiveObjects(), 0);
}

TEST_F(Events, FollowWhatTheUserDoes) {
  ASSERT_HRESULT_SUCCEEDED(Point()->Advise(&sink, &cookie));
  const auto other = engine.AddWorkbook(L"Other.xlsx");
  engine.ActivateWindow(workbook->windows.front());
  const std::vector<DISPID> expected = {
      static_cast<DISPID>(AppEvent::kWindowDeactivate), static_cast<DISPID>(AppEvent::kWorkbookDeactivate),
      static_cast<DISPID>(AppEvent::kWorkbookActivate), static_cast<DISPID>(AppEvent::kWindowActivate)};
  EXPECT_EQ(sink.events, expected);
  EXPECT_EQ(Get(sink.args[1].Object(), L"Caption").value.Text(), L"Book.xlsx");

  ASSERT_HRESULT_SUCCEEDED(Put(Application(), L"EnableEvents", Variant(false)).hr);
  engine.Type(L"", "A1", L"silent");
  EXPECT_EQ(sink.events.size(), expected.size());
  ASSERT_HRESULT_SUCCEEDED(Put(Application(), L"EnableEvents", Variant(true)).hr);
  engine.Type(L"", "A1", L"heard");
  EXPECT_EQ(sink.events.back(), static_cast<DISPID>(AppEvent::kSheetChange));
}

TEST_F(Events, GoWithEveryEditOfTheUser) {
  ASSERT_HRESULT_SUCCEEDED(Point()->Advise(&sink, &cookie));
  ASSERT_HRESULT_SUCCEEDED(CallMethod(Follow(Application(), {L"Worksheets"}), L"Add").hr);
  const auto heard = [&](const std::function<void()>& edit) {
    sink.events.clear();
    edit();
    std::vector<AppEvent> events;
    for (const DISPID id : sink.events)
      events.push_back(static_cast<AppEvent>(id));
    return events;
  };
  using enum AppEvent;
  using Heard = std::vector<AppEvent>;
  EXPECT_EQ(heard([&] { engine.Select(L"Data", "B2,D4:E5"); }),
            (Heard{kSheetDeactivate, kSheetActivate, kSheetSelectionChange}));
  EXPECT_EQ(Get(sink.args[1].Object(), L"Address").value.Text(), L"$B$2,$D$4:$E$5");
  EXPECT_EQ(heard([&] { engine.InsertRows(L"Data", 2, 3); }), Heard{kSheetChange});
  EXPECT_EQ(Get(sink.args[1].Object(), L"Address").value.Text(), L"$2:$4");
  EXPECT_EQ(heard([&] { engine.RenameSheet(L"Data", L"Facts"); }), Heard{});
  EXPECT_EQ(heard([&] { engine.DeleteSheet(L"facts"); }), (Heard{kSheetDeactivate, kSheetActivate}));
  EXPECT_THROW(engine.DeleteSheet(L""), std::runtime_error);
  engine.AddWorkbook(L"Other.xlsx");
  const int last = engine.Windows().back().id;
  EXPECT_EQ(heard([&] { engine.AnnounceClose(last); }), Heard{kWorkbookBeforeClose});
  EXPECT_EQ(heard([&] { engine.CloseWindow(last); }),
            (Heard{kWindowDeactivate, kWorkbookDeactivate, kWorkbookActivate, kWindowActivate}));
  sink.args.clear();
}

TEST_F(Events, CanKeepAWorkbookOpenInBothStyles) {
  ASSERT_HRESULT_SUCCEEDED(Point()->Advise(&sink, &cookie));
  const int window = engine.Windows().front().id;
  for (const EventStyle style : {EventStyle::kNamed, EventStyle::kPositional}) {
    engine.SetEventStyle(style);
    sink.cancels = true;
    EXPECT_THROW(engine.AnnounceClose(window), std::runtime_error);
    EXPECT_EQ(Get(sink.args[0].Object(), L"Name").value.Text(), L"Book.xlsx");
    sink.cancels = false;
    EXPECT_NO_THROW(engine.AnnounceClose(window));
  }
  sink.args.clear();
}

TEST_F(Events, LetSinksLeaveDuringACall) {
  Sink second;
  Sink staying;
  DWORD secondCookie = 0;
  DWORD stayingCookie = 0;
  ASSERT_HRESULT_SUCCEEDED(Point()->Advise(&sink, &cookie));
  ASSERT_HRESULT_SUCCEEDED(Point()->Advise(&second, &secondCookie));
  ASSERT_HRESULT_SUCCEEDED(Point()->Advise(&staying, &stayingCookie));
  sink.onEvent = [&] {
    EXPECT_HRESULT_SUCCEEDED(Point()->Unadvise(cookie));
    EXPECT_HRESULT_SUCCEEDED(Point()->Unadvise(secondCookie));
  };
  engine.Select(L"Data", "B2");
  engine.Select(L"Data", "B3");
  EXPECT_EQ(sink.events.size(), 1u);
  EXPECT_TRUE(second.events.empty());
  EXPECT_EQ(staying.events.size(), 2u);
  EXPECT_HRESULT_SUCCEEDED(Point()->Unadvise(stayingCookie));
  EXPECT_EQ(Point()->Unadvise(cookie), CONNECT_E_NOCONNECTION);
}

TEST_F(Events, CanBeRefused) {
  sink.answersEvents = false;
  EXPECT_EQ(Point()->Advise(&sink, &cookie), CONNECT_E_CANNOTCONNECT);
  sink.answersEvents = true;
  engine.Fault({{"events", "refuseAdvise"}});
  EXPECT_EQ(Point()->Advise(&sink, &cookie), CONNECT_E_CANNOTCONNECT);
  engine.Fault({{"events", "refused"}});
  EXPECT_EQ(Point(), nullptr);
}

}  // namespace
}  // namespace qv::devhost
