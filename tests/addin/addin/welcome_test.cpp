#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "addin_test.h"
#include "analytics_service.h"
#include "fake_ribbon.h"
#include "foundation/catalog.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/message_pump.h"

namespace qv {
namespace {

using devhost::PageItemKind;

constexpr wchar_t kKey[] = L"Software\\Quorvantis";
constexpr const wchar_t* kValues[] = {L"WelcomeShown", L"WelcomeShown_excel", L"WelcomeShown_et"};

std::optional<DWORD> Mark(const wchar_t* value) {
  DWORD number = 0;
  DWORD size = sizeof(number);
  if (RegGetValueW(HKEY_CURRENT_USER, kKey, value, RRF_RT_REG_DWORD, nullptr, &number, &size) !=
      ERROR_SUCCESS)
    return std::nullopt;
  return number;
}

/// The user's marks are away while it lives, and put back at the end.
class WelcomeMarks {
 public:
  WelcomeMarks() {
    for (std::size_t i = 0; i < std::size(kValues); ++i) {
      before_[i] = Mark(kValues[i]);
      Delete(kValues[i]);
    }
  }
  WelcomeMarks(const WelcomeMarks&) = delete;
  WelcomeMarks& operator=(const WelcomeMarks&) = delete;
  ~WelcomeMarks() {
    for (std::size_t i = 0; i < std::size(kValues); ++i) {
      Delete(kValues[i]);
      if (before_[i]) Set(kValues[i], REG_DWORD, *before_[i]);
    }
  }

  static void Set(const wchar_t* value, DWORD type, DWORD number) {
    UniqueRegistryKey key;
    RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr, key.Put(), nullptr);
    RegSetValueExW(key.Get(), value, 0, type, reinterpret_cast<const BYTE*>(&number), sizeof(number));
  }

 private:
  static void Delete(const wchar_t* value) { RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, value); }

  std::optional<DWORD> before_[std::size(kValues)];
};

/// A host whose one document window the user looks at.
class Welcome : public AddinTest {
 protected:
  void SetUp() override {
    frame_ = CreateWindowExW(0, L"Static", L"Excel", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 400, 300,
                             nullptr, nullptr, nullptr, nullptr);
    book_ = engine_.AddWorkbook(L"one.xlsx");
    book_->windows.front()->hwnd = HandleToLong(frame_);
  }

  void TearDown() override {
    AddinTest::TearDown();
    if (IsWindow(frame_)) DestroyWindow(frame_);
  }

  /// Connects, with the host's own window in front instead.
  void ConnectInFront() {
    Connect();
    DestroyWindow(frame_);
    frame_ = host_->Documents().TopWindow();
    ShowWindow(frame_, SW_SHOW);
    BringToFront(frame_);
  }

  static void BringToFront(HWND window) {
    SetForegroundWindow(window);
    EXPECT_TRUE(devhost::PumpUntil([&] { return GetForegroundWindow() == window; }, kTimeoutMs));
  }

  /// Runs until the welcome has come and gone.
  [[nodiscard]] bool WaitForWelcome() {
    const bool came = WaitForLog("Excel ShowFirstRunWelcome\r\n");
    devhost::DispatchWaitingMessages();
    return came;
  }

  [[nodiscard]] int Times(const char* event) {
    const std::string log = Log();
    int count = 0;
    for (auto at = log.find(event); at != std::string::npos; at = log.find(event, at + 1))
      ++count;
    return count;
  }

  WelcomeMarks marks_;
  HWND frame_ = nullptr;
  std::shared_ptr<devhost::memory::Workbook> book_;
};

TEST_F(Welcome, OpensTheLoginPageOnYesAndIsDone) {
  AnalyticsService service(2);
  boxes_.AnswerWith(IDYES);
  ConnectInFront();
  ASSERT_TRUE(WaitForWelcome());
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_TRUE(Contains(boxes_.Text(), L"Open it and sign in now?")) << ToUtf8(boxes_.Text());
  EXPECT_EQ(boxes_.Title(), L"AI Assistant");
  EXPECT_EQ(boxes_.Icon(), "information");
  EXPECT_EQ(boxes_.Buttons(), (std::vector<std::string>{"Yes", "No"}));
  EXPECT_EQ(boxes_.Owner(), frame_);
  EXPECT_NE(WaitForItem(PageItemKind::kNavigate, L"/panel/excel/login.html?"), "");
  EXPECT_TRUE(InOrder(Log(), {"Excel ShowFirstRunWelcome\r\n", "ActivateRibbonTab miss\r\n",
                              "Excel ShowPanePage\r\n", "Excel ShowPanePage page=login\r\n"}));
  EXPECT_EQ(Mark(L"WelcomeShown_excel"), 1U);
  EXPECT_EQ(Mark(L"WelcomeShown"), 1U);

  EXPECT_TRUE(InOrder(service.Find("welcome:shown"),
                      {"POST /v1/analytics/events", "{\"events\":[{\"event\":\"welcome:shown\"",
                       "\"props\":{\"source\":\"client\"}}]}"}));
}

TEST_F(Welcome, BringsItsRibbonTabUpOnYes) {
  boxes_.AnswerWith(IDYES);
  ConnectInFront();
  const FakeRibbon ribbon(frame_, CatalogText(L"en", L"ribbon.tabQuorvantis"));
  ASSERT_TRUE(WaitForWelcome());
  EXPECT_TRUE(WaitForLog("ActivateRibbonTab OK (acc)\r\n"));
  EXPECT_EQ(ribbon.TabActivations(), 1);
  EXPECT_NE(WaitForItem(PageItemKind::kNavigate, L"/panel/excel/login.html?"), "");
}

/// A window that hands the foreground on as soon as it gets it.
LRESULT CALLBACK GiveWay(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  const LRESULT result = DefWindowProcW(window, message, wparam, lparam);
  if (message == WM_SETFOCUS)
    SetForegroundWindow(reinterpret_cast<HWND>(GetWindowLongPtrW(window, GWLP_USERDATA)));
  return result;
}

TEST_F(Welcome, LeavesTheRibbonTabOfAHostThatDoesNotComeToTheFront) {
  boxes_.AnswerWith(IDYES);
  const HWND other = CreateWindowExW(0, L"Static", L"Other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 60, 60, 300,
                                     200, nullptr, nullptr, nullptr, nullptr);
  BringToFront(frame_);
  boxes_.InsideTheNext([&] {
    SetWindowLongPtrW(frame_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(other));
    SetWindowLongPtrW(frame_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&GiveWay));
  });
  devhost::AddinSession session(engine_.Application(), nullptr, {}, calls_);
  EXPECT_TRUE(WaitForLog("ActivateRibbonTab skip: host not foreground\r\n"));
  session.Disconnect();
  DestroyWindow(other);
}

TEST_F(Welcome, IsDoneOnNoToo) {
  boxes_.AnswerWith(IDNO);
  ConnectInFront();
  ASSERT_TRUE(WaitForWelcome());
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(Mark(L"WelcomeShown_excel"), 1U);
  EXPECT_EQ(Mark(L"WelcomeShown"), 1U);
  EXPECT_EQ(Log().find("ShowPanePage"), std::string::npos);
  EXPECT_EQ(Log().find("ActivateRibbonTab"), std::string::npos);
}

TEST_F(Welcome, StaysDueWhenTheLoginPageCannotBeShown) {
  boxes_.AnswerWith(IDYES);
  ConnectInFront();
  host_->Factory().SetOutcomes(E_FAIL, E_FAIL);
  ASSERT_TRUE(WaitForWelcome());
  ASSERT_TRUE(WaitForLog("Excel CreateCTP failed"));
  devhost::DispatchWaitingMessages();
  EXPECT_EQ(Mark(L"WelcomeShown"), std::nullopt);
  EXPECT_EQ(Mark(L"WelcomeShown_excel"), std::nullopt);
}

/// Without the user's eyes on the host nothing is shown, nothing marked, and nothing asked again.
TEST_F(Welcome, WaitsForAUserWhoLooksAtTheHost) {
  boxes_.AnswerWith(IDYES);
  const HWND other = CreateWindowExW(0, L"Static", L"Other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 60, 60, 300,
                                     200, nullptr, nullptr, nullptr, nullptr);
  struct Case {
    const char* what;
    std::function<void()> prepare;
  };
  const Case cases[] = {
      {"another window of the host's thread is in front", [&] { BringToFront(other); }},
      {"hidden", [&] { ShowWindow(frame_, SW_HIDE); }},
      {"minimised", [&] { ShowWindow(frame_, SW_MINIMIZE); }},
      {"no window of this handle", [&] { book_->windows.front()->hwnd = 0x7FF2; }},
      {"no document", [&] { engine_.CloseWorkbook(book_); }},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.what);
    ShowWindow(frame_, SW_SHOWNORMAL);
    BringToFront(frame_);
    test.prepare();
    const std::size_t before = Log().size();
    devhost::AddinSession session(engine_.Application(), nullptr, {}, calls_);
    EXPECT_TRUE(devhost::PumpUntil(
        [&] { return Log().find("Excel ShowFirstRunWelcome", before) != std::string::npos; }, kTimeoutMs));
    devhost::DispatchWaitingMessages();
    EXPECT_EQ(boxes_.Count(), 0);
    EXPECT_EQ(Mark(L"WelcomeShown"), std::nullopt);
    session.Disconnect();
  }
  DestroyWindow(other);
}

TEST_F(Welcome, IsNotDueOnceTheCommonMarkSaysSo) {
  struct Case {
    const wchar_t* value;
    DWORD type;
    DWORD number;
    bool due;
  };
  const Case cases[] = {
      {L"WelcomeShown", REG_DWORD, 1, false},
      {L"WelcomeShown", REG_DWORD, 0, true},
      {L"WelcomeShown", REG_DWORD, 2, true},
      {L"WelcomeShown", REG_BINARY, 1, true},
      // Written, but never read.
      {L"WelcomeShown_excel", REG_DWORD, 1, true},
  };
  boxes_.AnswerWith(IDNO);
  for (const Case& test : cases) {
    SCOPED_TRACE(testing::Message() << ToUtf8(test.value) << "=" << test.number << " type " << test.type);
    const WelcomeMarks clean;
    WelcomeMarks::Set(test.value, test.type, test.number);
    BringToFront(frame_);
    const std::size_t before = Log().size();
    devhost::AddinSession session(engine_.Application(), nullptr, {}, calls_);
    const bool came = devhost::PumpUntil(
        [&] { return Log().find("Excel ShowFirstRunWelcome", before) != std::string::npos; }, 2500);
    EXPECT_EQ(came, test.due);
    devhost::DispatchWaitingMessages();
    session.Disconnect();
  }
}

TEST_F(Welcome, IsCalledOffWhenTheConnectionEnds) {
  boxes_.AnswerWith(IDNO);
  BringToFront(frame_);
  {
    devhost::AddinSession session(engine_.Application(), nullptr, {}, calls_);
    session.Disconnect();
  }
  EXPECT_FALSE(
      devhost::PumpUntil([&] { return Log().find("Excel ShowFirstRunWelcome") != std::string::npos; }, 2500));
}

/// A user who looks elsewhere leaves it due, so that every timer would be heard of.
TEST_F(Welcome, ComesOnceForTwoConnectionsAndNoLater) {
  Connect();
  EXPECT_FALSE(devhost::PumpUntil([&] { return Times("Excel ShowFirstRunWelcome") > 0; }, 1200));
  // Connected again without an end, as some hosts do.
  EXPECT_EQ(
      host_->Session().Addin()->OnConnection(engine_.Application(), ext_cm_AfterStartup, nullptr, nullptr),
      S_OK);
  EXPECT_TRUE(devhost::PumpUntil([&] { return Times("Excel ShowFirstRunWelcome") > 0; }, 1500));
  EXPECT_FALSE(devhost::PumpUntil([&] { return Times("Excel ShowFirstRunWelcome") > 1; }, 2500));
  EXPECT_EQ(boxes_.Count(), 0);
}

TEST_F(Welcome, MarksTheWpsHostAsItsOwn) {
  boxes_.AnswerWith(IDNO);
  devhost::MemoryEngine wps(devhost::HostStyle::kWps);
  // The document is a child of the frame that the user sees.
  const HWND document = CreateWindowExW(0, L"Static", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 50, frame_,
                                        nullptr, nullptr, nullptr);
  wps.AddWorkbook(L"one.xlsx")->windows.front()->hwnd = HandleToLong(document);
  BringToFront(frame_);
  devhost::AddinSession session(wps.Application(), nullptr, {}, calls_);
  ASSERT_TRUE(WaitForWelcome());
  EXPECT_EQ(boxes_.Count(), 1);
  EXPECT_EQ(Mark(L"WelcomeShown_et"), 1U);
  EXPECT_EQ(Mark(L"WelcomeShown_excel"), std::nullopt);
  EXPECT_EQ(Mark(L"WelcomeShown"), 1U);
  session.Disconnect();
}

}  // namespace
}  // namespace qv
