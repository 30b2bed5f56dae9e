#include "services/proxy_token.h"

#include <windows.h>

#include <wincrypt.h>

#include <array>
#include <cstdint>
#include <cstring>

#include "foundation/unique_handle.h"
#include "services/llm_proxy_rules.h"

namespace qv {
namespace {

struct ProviderTraits {
  using Type = HCRYPTPROV;
  static Type None() { return 0; }
  static void Close(Type handle) { CryptReleaseContext(handle, 0); }
};

bool DrawRandom(std::array<std::uint8_t, kProxyTokenBytes>& bytes) {
  UniqueHandle<ProviderTraits> provider;
  return CryptAcquireContextW(provider.Put(), nullptr, nullptr, PROV_RSA_FULL, CRYPT_VERIFYCONTEXT) &&
         CryptGenRandom(provider.Get(), static_cast<DWORD>(bytes.size()), bytes.data());
}

}  // namespace

std::wstring GenerateProxyToken() {
  std::array<std::uint8_t, kProxyTokenBytes> bytes{};
  if (!DrawRandom(bytes)) {
    const ULONGLONG ticks = GetTickCount64();
    std::memcpy(bytes.data(), &ticks, sizeof(ticks));
  }
  return ProxyTokenText(bytes);
}

}  // namespace qv
