#pragma once

#include <winsock2.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "foundation/unique_handle.h"
#include "httpapi/tcp_socket.h"
#include "httpapi/wire/url_prefix.h"

namespace qv::devhost {

/// A registered URL. Its port is listened on, and a named object tells other processes that it is registered
/// and not just a foreign program's. One port serves one URL; a second one on it is refused as if it were the
/// same.
class UrlClaim {
 public:
  using OnClient = std::function<void(UniqueSocket)>;

  /// NO_ERROR, ERROR_ALREADY_EXISTS when somebody registered it, ERROR_SHARING_VIOLATION when another program
  /// listens on the port. `onClient` is called on a thread of the claim's own.
  [[nodiscard]] static ULONG Acquire(UrlPrefix prefix, OnClient onClient, std::unique_ptr<UrlClaim>& claim);
  UrlClaim(const UrlClaim&) = delete;
  UrlClaim& operator=(const UrlClaim&) = delete;
  /// The port is free when this returns. Not on the claim's own thread.
  ~UrlClaim();

  [[nodiscard]] const UrlPrefix& Prefix() const { return prefix_; }

 private:
  UrlClaim(UrlPrefix prefix, UniqueKernelHandle name, UniqueSocket listener, UniqueKernelHandle stop);
  void Accept(const OnClient& onClient);

  const UrlPrefix prefix_;
  UniqueKernelHandle name_;
  UniqueSocket listener_;
  UniqueKernelHandle stop_;
  std::thread acceptor_;
};

}  // namespace qv::devhost
