#include "host/addin_library.h"

#include <objbase.h>

#include <stdexcept>

#include "foundation/text.h"
#include "host/class_registration.h"
#include "host/message_pump.h"

namespace qv::devhost {

AddinLibrary::AddinLibrary(const std::wstring& path, CallLog& log) : log_(log) {
  module_.Reset(LoadLibraryW(path.c_str()));
  const DWORD error = GetLastError();
  if (!module_) {
    throw std::runtime_error("the add-in " + ToUtf8(path) + " cannot be loaded (Windows error " +
                             std::to_string(error) + ")");
  }
}

HRESULT AddinLibrary::Call(const char* name) const {
  using Export = HRESULT(STDAPICALLTYPE*)();
  const auto function =
      reinterpret_cast<Export>(reinterpret_cast<void*>(GetProcAddress(module_.Get(), name)));
  return function ? function() : HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
}

void AddinLibrary::Register() {
  log_.Require("DllRegisterServer", Call("DllRegisterServer"));
  PublishUserClasses(log_);
}

HRESULT AddinLibrary::Unregister() {
  return log_.Add("DllUnregisterServer", Call("DllUnregisterServer"));
}

bool AddinLibrary::WaitUntilUnloadable(DWORD timeoutMs) {
  // Worker threads of the add-in hold the DLL for as long as they run; they end by themselves.
  constexpr DWORD kAskEveryMs = 20;
  const ULONGLONG deadline = GetTickCount64() + timeoutMs;
  HRESULT answer = Call("DllCanUnloadNow");
  while (answer == S_FALSE && GetTickCount64() < deadline) {
    static_cast<void>(PumpUntil([] { return false; }, kAskEveryMs));
    answer = Call("DllCanUnloadNow");
  }
  return log_.Add("DllCanUnloadNow", answer) == S_OK;
}

void AddinLibrary::Unload() {
  module_.Reset();
  CoFreeUnusedLibrariesEx(0, 0);
}

}  // namespace qv::devhost
