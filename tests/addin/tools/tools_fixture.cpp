#include "addin/tools/tools_fixture.h"

#include "tools/tool_result.h"

namespace qv::test {
namespace {

LRESULT CALLBACK RunTasks(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  auto* const queue = reinterpret_cast<UiTaskQueue*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message != kUiTaskMessage || queue == nullptr) return DefWindowProcW(window, message, wparam, lparam);
  queue->OnMessage(lparam);
  return 0;
}

}  // namespace

TaskWindow::TaskWindow(UiTaskQueue& queue) {
  WNDCLASSW type{};
  type.lpfnWndProc = RunTasks;
  type.hInstance = GetModuleHandleW(nullptr);
  type.lpszClassName = L"QvToolsTest";
  RegisterClassW(&type);
  window_ =
      CreateWindowW(type.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, type.hInstance, nullptr);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&queue));
}

TaskWindow::~TaskWindow() {
  DestroyWindow(window_);
}

void PumpMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
    DispatchMessageW(&message);
}

void ToolsTest::SetUp() {
  WorkbookTest::SetUp();
  Pin();
  pane->Tasks().Open(window.Handle());
  tools.emplace(pane, target, panel);
  tools->Connect();
}

void ToolsTest::TearDown() {
  tools->Close();
  pane->Tasks().Close();
  tools.reset();
  WorkbookTest::TearDown();
}

void ToolsTest::ProtectAllBut(const std::string& address) {
  const Variant unlocked(false);
  EXPECT_EQ(PutDispProperty(engine.RangeObject(L"Sheet1", address).Get(), L"Locked", &unlocked), S_OK);
  engine.Sheet(L"Sheet1").isProtected = true;
}

void ToolsTest::MakeBusy(const std::string& member) {
  engine.Faults().Fail({.member = member, .error = {DISP_E_EXCEPTION, devhost::memory::kHostBusy}});
}

std::wstring Error(std::wstring_view message) {
  return ErrorResult(message);
}

}  // namespace qv::test
