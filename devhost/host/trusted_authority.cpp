#include "host/trusted_authority.h"

#include <windows.h>
// Needs the types of the first.
#include <wincrypt.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/wine.h"

namespace qv::devhost {
namespace {

constexpr std::size_t kSha256Bytes = 32;

struct CertificateTraits {
  using Type = PCCERT_CONTEXT;
  static Type None() { return nullptr; }
  static void Close(Type handle) { CertFreeCertificateContext(handle); }
};

struct StoreTraits {
  using Type = HCERTSTORE;
  static Type None() { return nullptr; }
  static void Close(Type handle) { CertCloseStore(handle, 0); }
};

struct ProviderTraits {
  using Type = HCRYPTPROV;
  static Type None() { return 0; }
  static void Close(Type handle) { CryptReleaseContext(handle, 0); }
};

using UniqueCertificate = UniqueHandle<CertificateTraits>;
using UniqueStore = UniqueHandle<StoreTraits>;
using UniqueProvider = UniqueHandle<ProviderTraits>;

void Require(bool done, const char* step) {
  if (!done) throw std::runtime_error(std::string("the development authority cannot be trusted: ") + step);
}

UniqueCertificate ReadCertificate(const std::wstring& pemPath) {
  std::ifstream file(std::filesystem::path(pemPath), std::ios::binary);
  const std::string pem(std::istreambuf_iterator<char>(file), {});
  Require(!pem.empty(), "its file cannot be read");
  DWORD size = 0;
  const auto length = static_cast<DWORD>(pem.size());
  Require(CryptStringToBinaryA(pem.data(), length, CRYPT_STRING_BASE64HEADER, nullptr, &size, nullptr,
                               nullptr) != FALSE,
          "its file is no PEM file");
  std::vector<BYTE> der(size);
  Require(CryptStringToBinaryA(pem.data(), length, CRYPT_STRING_BASE64HEADER, der.data(), &size, nullptr,
                               nullptr) != FALSE,
          "its file is no PEM file");
  UniqueCertificate certificate(CertCreateCertificateContext(X509_ASN_ENCODING, der.data(), size));
  Require(static_cast<bool>(certificate), "its file holds no certificate");
  return certificate;
}

void AddToUserRoots(PCCERT_CONTEXT certificate) {
  const UniqueStore roots(
      CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, L"Root"));
  Require(static_cast<bool>(roots), "the user's root store does not open");
  Require(CertAddCertificateContextToStore(roots.Get(), certificate, CERT_STORE_ADD_REPLACE_EXISTING,
                                           nullptr) != FALSE,
          "the user's root store does not take it");
}

/// Base64 of the SHA-256 of the public key, which is how the browser is told whom to trust.
std::wstring PublicKeyPin(PCCERT_CONTEXT certificate) {
  UniqueProvider provider;
  Require(CryptAcquireContextW(provider.Put(), nullptr, nullptr, PROV_RSA_AES, CRYPT_VERIFYCONTEXT) != FALSE,
          "no hashing provider");
  std::array<BYTE, kSha256Bytes> hash{};
  auto hashSize = static_cast<DWORD>(hash.size());
  Require(
      CryptHashPublicKeyInfo(provider.Get(), CALG_SHA_256, 0, X509_ASN_ENCODING,
                             &certificate->pCertInfo->SubjectPublicKeyInfo, hash.data(), &hashSize) != FALSE,
      "its key cannot be hashed");
  std::array<wchar_t, 2 * kSha256Bytes> pin{};
  auto length = static_cast<DWORD>(pin.size());
  Require(CryptBinaryToStringW(hash.data(), hashSize, CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF, pin.data(),
                               &length) != FALSE,
          "its key cannot be written");
  return std::wstring(pin.data(), length);
}

}  // namespace

void TrustAuthority(const std::wstring& pemPath) {
  Require(IsWine(), "only a scratch user of Wine may");
  const UniqueCertificate authority = ReadCertificate(pemPath);
  AddToUserRoots(authority.Get());
  SetEnvironmentVariableW(L"QV_DEVHOST_BROWSER_SPKI", PublicKeyPin(authority.Get()).c_str());
}

}  // namespace qv::devhost
