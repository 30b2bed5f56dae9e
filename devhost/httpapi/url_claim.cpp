#include "httpapi/url_claim.h"

#include <array>
#include <utility>

#include "foundation/text.h"
#include "httpapi/last_catch.h"

namespace qv::devhost {
namespace {

struct WsaEventTraits {
  using Type = WSAEVENT;
  static Type None() { return WSA_INVALID_EVENT; }
  static void Close(Type handle) { WSACloseEvent(handle); }
};

bool IsSet(HANDLE event) {
  return WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
}

/// Takes every client that waits, unless it is time to stop; the event tells of later ones.
void AcceptAll(SOCKET listener, HANDLE stop, const UrlClaim::OnClient& onClient) {
  while (!IsSet(stop)) {
    UniqueSocket client(accept(listener, nullptr, nullptr));
    if (!client) return;
    // One that there is no room for is sent away, the next one may have better luck.
    Contain([&] { onClient(std::move(client)); });
  }
}

}  // namespace

ULONG UrlClaim::Acquire(UrlPrefix prefix, OnClient onClient, std::unique_ptr<UrlClaim>& claim) {
  const std::wstring name = Concat(L"Global\\QvHttpApiPort", prefix.port);
  UniqueKernelHandle owned(CreateMutexW(nullptr, FALSE, name.c_str()));
  if (!owned || GetLastError() == ERROR_ALREADY_EXISTS) return ERROR_ALREADY_EXISTS;
  UniqueSocket listener = ListenOn(prefix.port);
  if (!listener) return ERROR_SHARING_VIOLATION;
  UniqueKernelHandle stop(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  if (!stop) return ERROR_NOT_ENOUGH_MEMORY;
  claim.reset(new UrlClaim(std::move(prefix), std::move(owned), std::move(listener), std::move(stop)));
  claim->acceptor_ =
      std::thread([self = claim.get(), onClient = std::move(onClient)] { self->Accept(onClient); });
  return NO_ERROR;
}

UrlClaim::UrlClaim(UrlPrefix prefix, UniqueKernelHandle name, UniqueSocket listener, UniqueKernelHandle stop)
    : prefix_(std::move(prefix)),
      name_(std::move(name)),
      listener_(std::move(listener)),
      stop_(std::move(stop)) {}

UrlClaim::~UrlClaim() {
  SetEvent(stop_.Get());
  if (acceptor_.joinable()) acceptor_.join();
  listener_.Reset();
}

void UrlClaim::Accept(const OnClient& onClient) {
  const UniqueHandle<WsaEventTraits> arrived(WSACreateEvent());
  WSAEventSelect(listener_.Get(), arrived.Get(), FD_ACCEPT);
  const std::array<HANDLE, 2> waited = {stop_.Get(), arrived.Get()};
  while (WaitForMultipleObjects(static_cast<DWORD>(waited.size()), waited.data(), FALSE, INFINITE) ==
         WAIT_OBJECT_0 + 1) {
    WSAResetEvent(arrived.Get());
    AcceptAll(listener_.Get(), stop_.Get(), onClient);
  }
}

}  // namespace qv::devhost
