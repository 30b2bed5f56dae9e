#include "run_fixture.h"

#include <algorithm>
#include <utility>

#include "foundation/file_replacement.h"
#include "foundation/host_session.h"
#include "foundation/settings.h"
#include "foundation/text.h"
#include "workbook/workbook_busy_table.h"

namespace qv {
namespace {

constexpr const wchar_t* kWindowClass = L"QvTranslationTestPane";
constexpr DWORD kDeadlineMs = 10000;
/// Longest wait before a condition that needs no message is looked at again.
constexpr DWORD kSliceMs = 20;

LRESULT CALLBACK PaneProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* context = reinterpret_cast<PaneContext*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == kUiTaskMessage && context != nullptr) {
    context->Tasks().OnMessage(lParam);
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

HWND MakePaneWindow(PaneContext& context) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = &PaneProcedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kWindowClass;
  RegisterClassW(&windowClass);
  const HWND window = CreateWindowExW(0, kWindowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                      windowClass.hInstance, nullptr);
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&context));
  return window;
}

/// The add-in reads the service's address from the user's settings file.
void WriteServiceSettings(const ServiceEndpoint& endpoint) {
  const std::string text = std::string("{\"serviceHost\":\"127.0.0.1\",\"servicePort\":") +
                           std::to_string(endpoint.port) + ",\"serviceScheme\":\"http\"}";
  ASSERT_TRUE(WriteFileAtomically(GetSettingsPath(), text));
}

}  // namespace

void RecordedPage::RunPanelScript(const std::wstring& script) {
  received.push_back(script);
  if (onReceived) onReceived(script);
}

void RecordedPage::PostPanelJson(const std::wstring& json) {
  RunPanelScript(json);
}

int RecordedPage::Count(std::wstring_view part) const {
  return static_cast<int>(
      std::ranges::count_if(received, [part](const std::wstring& text) { return Contains(text, part); }));
}

std::wstring RecordedPage::Find(std::wstring_view part) const {
  const auto found =
      std::ranges::find_if(received, [part](const std::wstring& text) { return Contains(text, part); });
  return found == received.end() ? std::wstring() : *found;
}

TestPane::TestPane(IDispatch* application, Patience patience) : window_(MakePaneWindow(*context)) {
  context->SetWindows(window_, nullptr);
  context->Tasks().Open(window_);
  target.SetApplication(application);
  Token(L"dev-test");
  controller = std::make_unique<RunController>(context, page, target, tokens, session, patience);
}

TestPane::~TestPane() {
  Close();
  controller.reset();
  DestroyWindow(window_);
}

void TestPane::Close() {
  context->MarkClosing();
  context->Tasks().Close();
  controller->BeginShutdownEarly();
  target.ReleaseReferences();
}

void TestPane::Start(const std::wstring& members, std::wstring_view action) {
  controller->Start(action,
                    Concat(L"{\"action\":\"", action, L"\",\"sourceLang\":\"en\",\"targetLang\":\"es\"",
                           members.empty() ? L"" : L",", members, L"}"));
}

RunTest::RunTest() {
  engine->AddWorkbook(L"Book.xlsx", L"C:\\Books", {L"Data", L"More", L"Hidden"});
  engine->Sheet(L"Hidden").visible = 0;
}

void RunTest::SetUp() {
  service.Reset();
  WriteServiceSettings(service.Endpoint());
  HostSession::Get().Connect(engine->Application(), HostKind::kExcel, L"16.0");
  ASSERT_EQ(HostSession::Get().Endpoint(), service.Endpoint());
  pane = std::make_unique<TestPane>(engine->Application());
}

void RunTest::TearDown() {
  pane.reset();
  HostSession::Get().Disconnect();
  EXPECT_TRUE(engine->Host().displayAlerts);
  EXPECT_TRUE(engine->Host().screenUpdating);
  EXPECT_EQ(engine->LiveObjects(), 0);
  EXPECT_EQ(engine->WrongThreadCalls(), 0);
  EXPECT_TRUE(WorkbookBusyTable::TryClaimWorkbook(L"C:\\Books\\Book.xlsx", this));
  WorkbookBusyTable::ReleaseWorkbook(L"C:\\Books\\Book.xlsx", this);
}

bool RunTest::PumpUntil(const std::function<bool()>& condition) {
  const ULONGLONG begin = GetTickCount64();
  while (!condition()) {
    if (GetTickCount64() - begin >= kDeadlineMs) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kSliceMs, QS_ALLINPUT);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      DispatchMessageW(&message);
    }
  }
  return true;
}

bool RunTest::WaitForPostedTask() {
  const ULONGLONG begin = GetTickCount64();
  MSG message;
  while (!PeekMessageW(&message, nullptr, kUiTaskMessage, kUiTaskMessage, PM_NOREMOVE)) {
    if (GetTickCount64() - begin >= kDeadlineMs) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kSliceMs, QS_POSTMESSAGE);
  }
  return true;
}

bool RunTest::PumpUntilPageHas(std::wstring_view part) {
  return PumpUntil([&] { return pane->page.Has(part); });
}

void RunTest::FillRows(int count) {
  for (int row = 1; row <= count; ++row)
    engine->Set(L"", ToUtf8(Concat(L"A", row)), Concat(L"Text number ", row));
}

std::wstring RunTest::Text(const std::string& address, const std::wstring& sheet) {
  const nlohmann::json value = engine->Cell(sheet, address).at("value");
  return value.is_string() ? FromUtf8(value.get<std::string>()) : Concat(L"<", FromUtf8(value.dump()), L">");
}

}  // namespace qv
