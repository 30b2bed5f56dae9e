#include "services/child_process.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <memory>

#include "foundation/unique_handle.h"
#include "services/agent_command.h"
#include "services/agent_places.h"
#include "services/console_start.h"

namespace qv {
namespace {

using Clock = std::chrono::steady_clock;

constexpr DWORD kPieceBytes = 1024;
constexpr DWORD kPollMs = 10;

/// The list of handles that a child inherits.
class InheritedHandles {
 public:
  explicit InheritedHandles(std::array<HANDLE, 2> handles) : handles_(handles) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_ = std::make_unique<std::byte[]>(size);
    ready_ = InitializeProcThreadAttributeList(List(), 1, 0, &size) != FALSE;
    set_ = ready_ && UpdateProcThreadAttribute(List(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                               sizeof(handles_), nullptr, nullptr);
  }
  InheritedHandles(const InheritedHandles&) = delete;
  InheritedHandles& operator=(const InheritedHandles&) = delete;
  ~InheritedHandles() {
    if (ready_) DeleteProcThreadAttributeList(List());
  }

  [[nodiscard]] explicit operator bool() const { return set_; }
  [[nodiscard]] LPPROC_THREAD_ATTRIBUTE_LIST List() const {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.get());
  }

 private:
  std::array<HANDLE, 2> handles_;
  std::unique_ptr<std::byte[]> memory_;
  bool ready_ = false;
  bool set_ = false;
};

/// A job that ends every process in it when its last handle goes.
UniqueKernelHandle MakeLeash() {
  UniqueKernelHandle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof(limits));
  return job;
}

/// A running child and our end of its output.
class Child {
 public:
  bool Start(const std::wstring& application, std::wstring& commandLine, bool keepErrors) {
    SECURITY_ATTRIBUTES inheritable{sizeof(inheritable), nullptr, TRUE};
    UniqueKernelHandle write;
    if (!CreatePipe(read_.Put(), write.Put(), nullptr, 0)) return false;
    const UniqueFile nothing(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable, OPEN_EXISTING, 0,
                                         nullptr));
    if (!nothing || !SetHandleInformation(write.Get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT))
      return false;
    const InheritedHandles inherited({write.Get(), nothing.Get()});
    if (!inherited) return false;

    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof(startup);
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = nothing.Get();
    startup.StartupInfo.hStdOutput = write.Get();
    startup.StartupInfo.hStdError = keepErrors ? write.Get() : nothing.Get();
    startup.lpAttributeList = inherited.List();
    // Not the host's current directory: it may be a workbook's, and what lies there is nobody's to run or
    // load.
    const std::wstring folder = SystemDirectory();
    // For what the child itself starts by name alone.
    std::wstring environment =
        WithEnvironment(CurrentEnvironment(), {{L"NoDefaultCurrentDirectoryInExePath", L"1"}});
    PROCESS_INFORMATION made{};
    constexpr DWORD kFlags =
        CREATE_NO_WINDOW | CREATE_UNICODE_ENVIRONMENT | CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT;
    if (!CreateProcessW(application.empty() ? nullptr : application.c_str(), commandLine.data(), nullptr,
                        nullptr, TRUE, kFlags, environment.data(), folder.empty() ? nullptr : folder.c_str(),
                        &startup.StartupInfo, &made)) {
      return false;
    }
    process_.Reset(made.hProcess);
    const UniqueKernelHandle thread(made.hThread);
    // A host that is in a job of its own may not allow another; then only the program itself is ended.
    isLeashed_ = AssignProcessToJobObject(leash_.Get(), process_.Get()) != FALSE;
    ResumeThread(thread.Get());
    return true;
  }

  /// Waits until the child ends or the time is over, taking what it prints meanwhile.
  bool Wait(Clock::time_point deadline, std::size_t keptBytes, std::string& output) {
    for (;;) {
      const bool ended = WaitForSingleObject(process_.Get(), kPollMs) == WAIT_OBJECT_0;
      TakeOutput(deadline, keptBytes, output);
      if (ended) return true;
      if (Clock::now() >= deadline) return false;
    }
  }

  [[nodiscard]] DWORD ExitCode() const {
    DWORD code = 0;
    GetExitCodeProcess(process_.Get(), &code);
    return code;
  }

  void End() {
    if (!isLeashed_) TerminateProcess(process_.Get(), 1);
    leash_.Reset();
  }

 private:
  /// Takes what is there; a read of more would wait for a child that is silent, or for one of its own
  /// children that still holds the pipe.
  void TakeOutput(Clock::time_point deadline, std::size_t keptBytes, std::string& output) {
    std::array<char, kPieceBytes> piece{};
    DWORD available = 0;
    while (PeekNamedPipe(read_.Get(), nullptr, 0, nullptr, &available, nullptr) && available > 0) {
      DWORD got = 0;
      if (!ReadFile(read_.Get(), piece.data(), std::min(available, kPieceBytes), &got, nullptr)) return;
      output.append(piece.data(), std::min<std::size_t>(got, keptBytes - output.size()));
      if (Clock::now() >= deadline) return;
    }
  }

  UniqueKernelHandle read_;
  UniqueKernelHandle leash_ = MakeLeash();
  UniqueKernelHandle process_;
  bool isLeashed_ = false;
};

}  // namespace

ChildRun RunCaptured(const std::wstring& application, std::wstring commandLine, const ChildLimits& limits) {
  ChildRun run;
  Child child;
  run.started = child.Start(application, commandLine, limits.keepErrors);
  if (!run.started) return run;
  run.finished = child.Wait(Clock::now() + limits.time, limits.outputBytes, run.output);
  if (run.finished) {
    run.exitCode = child.ExitCode();
  } else {
    child.End();
  }
  return run;
}

}  // namespace qv
