#include "owner_process.h"

#include "foundation/module.h"
#include "foundation/text.h"

namespace qv {

OwnerProcess::OwnerProcess(std::uint16_t port, const std::wstring& name) {
  const std::wstring own = ThisModulePath();
  const std::wstring program = own.substr(0, own.find_last_of(L'\\')) + L"\\qv_listener_owner.exe";
  std::wstring command = Concat(L"\"", program, L"\" ", port, L" ", name);
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION info{};
  if (CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &info) == FALSE) {
    return;
  }
  process_.Reset(info.hProcess);
  CloseHandle(info.hThread);
}

OwnerProcess::~OwnerProcess() {
  Kill();
}

int OwnerProcess::WaitForEnd() const {
  DWORD status = 0;
  if (WaitForSingleObject(process_.Get(), 10'000) != WAIT_OBJECT_0) return -1;
  return GetExitCodeProcess(process_.Get(), &status) != FALSE ? static_cast<int>(status) : -1;
}

void OwnerProcess::Kill() const {
  TerminateProcess(process_.Get(), 9);
  WaitForSingleObject(process_.Get(), 10'000);
}

}  // namespace qv
