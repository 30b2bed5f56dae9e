#pragma once

#include <windows.h>

#include <string>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "ole_program.h"

namespace qv::bench {

inline constexpr wchar_t kPaneWindowClass[] = L"QvBenchPane";

/// Hears when a request is answered.
class AnswerPage final : public PanelOutput {
 public:
  void RunPanelScript(const std::wstring& script) override { answer = script; }
  void PostPanelJson(const std::wstring&) override {}
  void PostPanelScript(const std::wstring& script) override { RunPanelScript(script); }

  std::wstring answer;
};

inline LRESULT CALLBACK PaneProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* context = reinterpret_cast<PaneContext*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message != kUiTaskMessage || context == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  context->Tasks().OnMessage(lParam);
  return 0;
}

/// The window to which a pane's tasks are posted.
class TaskWindow {
 public:
  explicit TaskWindow(PaneContext& context) : context_(context) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &PaneProcedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kPaneWindowClass;
    RegisterClassW(&windowClass);
    window_ = CreateWindowExW(0, kPaneWindowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                              windowClass.hInstance, nullptr);
    Require(window_ != nullptr, "no window for the tasks");
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&context));
    context.SetWindows(window_, nullptr);
    context.Tasks().Open(window_);
  }
  TaskWindow(const TaskWindow&) = delete;
  TaskWindow& operator=(const TaskWindow&) = delete;
  ~TaskWindow() {
    context_.Tasks().Close();
    DestroyWindow(window_);
  }

 private:
  PaneContext& context_;
  HWND window_ = nullptr;
};

}  // namespace qv::bench
