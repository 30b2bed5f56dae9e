#include "addin/office_interfaces.h"
#include "addin_test.h"
#include "analytics_service.h"
#include "foundation/text.h"
#include "host/addin_library.h"
#include "host/addin_session.h"
#include "host/task_pane_factory.h"
#include "other_program.h"

namespace qv {
namespace {

class LifeCycle : public AddinTest {
 protected:
  void SetUp() override {
    library_ = std::make_unique<devhost::AddinLibrary>(AddinPath(), calls_);
    library_->Register();
  }

  void TearDown() override {
    EXPECT_TRUE(library_->WaitUntilUnloadable(kTimeoutMs));
    EXPECT_EQ(engine_.Counters().value("live", -1), 0);
  }

  static ComPtr<IDTExtensibility2> Create() {
    CLSID classId{};
    ComPtr<IDTExtensibility2> addin;
    EXPECT_EQ(CLSIDFromProgID(L"ExcelAddin.Connect", &classId), S_OK);
    EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&addin)), S_OK);
    return addin;
  }

  std::unique_ptr<devhost::AddinLibrary> library_;
};

TEST_F(LifeCycle, SurvivesFiftyConnects) {
  for (int round = 0; round < 50; ++round) {
    const devhost::AddinSession::Manner manner{.mode = round % 2 == 0 ? ext_cm_Startup : ext_cm_AfterStartup,
                                               .withInstance = round % 3 != 0,
                                               .nullCustom = round % 4 == 0};
    devhost::AddinSession session(engine_.Application(), nullptr, manner, calls_);
    EXPECT_EQ(session.Disconnect(round % 5 == 0 ? ext_dm_UserClosed : ext_dm_HostShutdown), 0U) << round;
    ASSERT_EQ(engine_.Counters().value("live", -1), 0) << round;
  }
}

TEST_F(LifeCycle, ToleratesEveryOrderOfCalls) {
  IDispatch* const application = engine_.Application();
  {
    SCOPED_TRACE("disconnected without a connection");
    const auto addin = Create();
    EXPECT_EQ(addin->OnStartupComplete(nullptr), S_OK);
    EXPECT_EQ(addin->OnBeginShutdown(nullptr), S_OK);
    EXPECT_EQ(addin->OnDisconnection(ext_dm_HostShutdown, nullptr), S_OK);
  }
  {
    SCOPED_TRACE("connected without an application");
    const auto addin = Create();
    EXPECT_EQ(addin->OnConnection(nullptr, ext_cm_Startup, nullptr, nullptr), S_OK);
    EXPECT_EQ(addin->OnDisconnection(ext_dm_HostShutdown, nullptr), S_OK);
  }
  {
    SCOPED_TRACE("connected twice, ended twice, connected again");
    const auto addin = Create();
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(addin->OnConnection(application, ext_cm_Startup, nullptr, nullptr), S_OK);
      EXPECT_EQ(addin->OnConnection(application, ext_cm_AfterStartup, nullptr, nullptr), S_OK);
      EXPECT_EQ(addin->OnAddInsUpdate(nullptr), S_OK);
      EXPECT_EQ(addin->OnBeginShutdown(nullptr), S_OK);
      EXPECT_EQ(addin->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
      EXPECT_EQ(addin->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
    }
  }
  {
    SCOPED_TRACE("released without being disconnected");
    EXPECT_EQ(Create()->OnConnection(application, ext_cm_Startup, nullptr, nullptr), S_OK);
  }
  {
    SCOPED_TRACE("a second object takes over; the first one's end leaves it alone");
    const auto first = Create();
    const auto second = Create();
    EXPECT_EQ(first->OnConnection(application, ext_cm_Startup, nullptr, nullptr), S_OK);
    EXPECT_EQ(second->OnConnection(application, ext_cm_Startup, nullptr, nullptr), S_OK);
    EXPECT_EQ(first->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
    EXPECT_EQ(second->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
  }
}

constexpr wchar_t kFreshProcess[] = L"qv_announcement.exe";

TEST(LifeCycleElsewhere, AnnouncesTheAddInOnce) {
  EXPECT_TRUE(PassesElsewhere(kFreshProcess, 96, L"LifeCycle.AnnouncesTheAddInOnce"));
}

TEST_F(LifeCycle, AnnouncesTheAddInOnce) {
  if (GetModuleHandleW(kFreshProcess) == nullptr) GTEST_SKIP() << "this process has announced it before";
  AnalyticsService service(3);
  const auto first = Create();
  const auto second = Create();
  for (const auto& addin : {first, second}) {
    EXPECT_EQ(addin->OnConnection(engine_.Application(), ext_cm_Startup, nullptr, nullptr), S_OK);
    EXPECT_EQ(addin->OnDisconnection(ext_dm_UserClosed, nullptr), S_OK);
    EXPECT_EQ(service.Events(1).size(), 1U);
  }
  EXPECT_EQ(second->OnConnection(engine_.Application(), ext_cm_AfterStartup, nullptr, nullptr), S_OK);
  // Something else to wait for, behind which a second announcement would not be.
  constexpr DISPID kSupport = 109;
  DISPPARAMS none{};
  EXPECT_EQ(second->Invoke(kSupport, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr, nullptr,
                           nullptr),
            S_OK);
  const std::vector<std::string> events = service.Events(2);
  ASSERT_EQ(events.size(), 2U);
  EXPECT_TRUE(InOrder(events[0], {"POST /v1/analytics/events", "{\"events\":[{\"event\":\"addin:loaded\"",
                                  "\"props\":{\"source\":\"client\"}}]}"}));
  EXPECT_NE(events[1].find("\"support:entry_click\""), std::string::npos) << events[1];
  EXPECT_EQ(second->OnDisconnection(ext_dm_HostShutdown, nullptr), S_OK);
}

TEST_F(LifeCycle, TakesThePaneFactoryBeforeTheConnection) {
  devhost::DocumentWindows documents(engine_, {});
  devhost::PaneList panes(documents, calls_);
  ComPtr<devhost::TaskPaneFactory> factory = MakeCom<devhost::TaskPaneFactory>(panes, engine_.Application());
  auto addin = Create();
  ComPtr<ICustomTaskPaneConsumer> consumer;
  ASSERT_EQ(addin.As(&consumer), S_OK);
  EXPECT_EQ(consumer->CTPFactoryAvailable(factory.Get()), S_OK);
  EXPECT_EQ(addin->OnConnection(engine_.Application(), ext_cm_Startup, nullptr, nullptr), S_OK);
  EXPECT_EQ(addin->OnDisconnection(ext_dm_HostShutdown, nullptr), S_OK);
  consumer.Reset();
  addin.Reset();
  EXPECT_EQ(factory.Detach()->Release(), 0U);
}

TEST_F(LifeCycle, LogsWhichHostItIs) {
  devhost::AddinSession(engine_.Application(), nullptr, {}, calls_).Disconnect();
  EXPECT_NE(Log().find("Excel OnConnection hostApp=excel appName=Microsoft Excel\r\n"), std::string::npos)
      << Log();

  devhost::MemoryEngine wps(devhost::HostStyle::kWps);
  devhost::AddinSession(wps.Application(), nullptr, {}, calls_).Disconnect();
  EXPECT_NE(Log().find("Excel OnConnection hostApp=wps-excel appName="), std::string::npos) << Log();

  const auto addin = Create();
  EXPECT_EQ(addin->OnConnection(nullptr, ext_cm_Startup, nullptr, nullptr), S_OK);
  EXPECT_NE(Log().find("Excel OnConnection hostApp=excel appName=(unknown)\r\n"), std::string::npos) << Log();
}

}  // namespace
}  // namespace qv
