#pragma once

#include <string>

#include "foundation/unique_handle.h"
#include "host/call_log.h"

namespace qv::devhost {

/// The add-in's DLL and its four exports.
class AddinLibrary {
 public:
  /// Loads the DLL from its full path; the log is borrowed. Throws std::runtime_error when it cannot be
  /// loaded.
  AddinLibrary(const std::wstring& path, CallLog& log);

  /// Registers the classes for the current user and makes them creatable. Throws std::runtime_error on
  /// failure.
  void Register();
  [[nodiscard]] HRESULT Unregister();
  /// Waits, with messages running, until the DLL says that nothing of it is in use or the time is over.
  [[nodiscard]] bool WaitUntilUnloadable(DWORD timeoutMs);
  /// Frees the DLL, also from COM's own list.
  void Unload();

 private:
  [[nodiscard]] HRESULT Call(const char* name) const;

  CallLog& log_;
  UniqueModule module_;
};

}  // namespace qv::devhost
