#include "host/command_loop.h"

#include <stdexcept>

#include "engines/common/com_guard.h"
#include "foundation/flag_scope.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvDevhostCommands";
constexpr UINT kLinesWait = WM_APP + 1;
/// Looks after commands that wait: no message tells that something has happened in a foreign loop.
constexpr UINT_PTR kWaitTimer = 1;
constexpr UINT kWaitTimerMs = 15;
/// Brings the windows up to date with the spreadsheet.
constexpr UINT_PTR kRefreshTimer = 2;
constexpr UINT kRefreshTimerMs = 100;

class DepthScope {
 public:
  explicit DepthScope(int& depth) : depth_(depth) { ++depth_; }
  DepthScope(const DepthScope&) = delete;
  DepthScope& operator=(const DepthScope&) = delete;
  ~DepthScope() { --depth_; }

 private:
  int& depth_;
};

HWND CreateReceiver(WNDPROC procedure, void* owner) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kClassName;
  RegisterClassW(&windowClass);
  const HWND window = CreateWindowExW(0, kClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                      windowClass.hInstance, nullptr);
  if (window == nullptr) throw std::runtime_error("the command window cannot be created");
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(owner));
  return window;
}

}  // namespace

CommandLoop::CommandLoop(DevelopmentHost& host, CommandRunner& runner, HANDLE input, InputEnd inputEnd)
    : host_(host),
      runner_(runner),
      inputEnd_(inputEnd),
      window_(CreateReceiver(Procedure, this)),
      reader_(input, [window = window_] { PostMessageW(window, kLinesWait, 0, 0); }) {
  if (host_.Documents().IsShown()) SetTimer(window_, kRefreshTimer, kRefreshTimerMs, nullptr);
}

CommandLoop::~CommandLoop() {
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

void CommandLoop::Run() {
  MSG message{};
  while (!runner_.IsFinished() && !host_.Documents().IsClosedByUser() &&
         GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    Dispatch(message);
    Serve(CommandRunner::Loop::kOwn);
  }
}

void CommandLoop::Dispatch(const MSG& message) {
  if (message.hwnd == window_) return static_cast<void>(DispatchMessageW(&message));
  const FlagScope foreign(isForeign_);
  DispatchMessageW(&message);
}

void CommandLoop::Handle(UINT message, WPARAM timer) {
  if (message == WM_TIMER && timer == kRefreshTimer) {
    // What could not be shown is tried again with the next tick.
    if (depth_ == 0) static_cast<void>(host_.Documents().Refresh());
    return;
  }
  Serve(isForeign_ || depth_ > 0 ? CommandRunner::Loop::kForeign : CommandRunner::Loop::kOwn);
}

void CommandLoop::Serve(CommandRunner::Loop loop) {
  ServeLines(loop);
  if (runner_.IsWaiting()) {
    SetTimer(window_, kWaitTimer, kWaitTimerMs, nullptr);
  } else {
    KillTimer(window_, kWaitTimer);
  }
}

void CommandLoop::ServeLines(CommandRunner::Loop loop) {
  const DepthScope deeper(depth_);
  while (const auto line = reader_.Take()) {
    if (line->kind != InputLine::Kind::kEnd || inputEnd_ == InputEnd::kQuits) runner_.Take(*line, loop);
  }
  runner_.Advance(loop);
}

LRESULT CALLBACK CommandLoop::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* loop = reinterpret_cast<CommandLoop*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (loop == nullptr || (message != kLinesWait && message != WM_TIMER))
    return DefWindowProcW(window, message, wParam, lParam);
  static_cast<void>(GuardCom([&] { return loop->Handle(message, wParam), S_OK; }));
  return 0;
}

}  // namespace qv::devhost
