#pragma once

#include <cstdint>
#include <string>

#include "foundation/unique_handle.h"

namespace qv {

/// Another process with a service on the port, which answers every request with its name. Ended with this
/// object.
class OwnerProcess {
 public:
  OwnerProcess(std::uint16_t port, const std::wstring& name);
  OwnerProcess(const OwnerProcess&) = delete;
  OwnerProcess& operator=(const OwnerProcess&) = delete;
  ~OwnerProcess();

  /// Its exit status once it has ended by itself; -1 when it has not after ten seconds.
  [[nodiscard]] int WaitForEnd() const;
  /// Ends it at once, as a crash would.
  void Kill() const;

 private:
  UniqueKernelHandle process_;
};

}  // namespace qv
