#include "engines/calc/base64.h"

#include <windows.h>
// Wants the header above first.
#include <wincrypt.h>

namespace qv::devhost::calc {

std::string Base64(std::string_view bytes) {
  constexpr DWORD kOneLine = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
  const auto* const from = reinterpret_cast<const BYTE*>(bytes.data());
  const auto count = static_cast<DWORD>(bytes.size());
  DWORD size = 0;
  if (!CryptBinaryToStringA(from, count, kOneLine, nullptr, &size)) return {};
  std::string text(size, '\0');
  if (!CryptBinaryToStringA(from, count, kOneLine, text.data(), &size)) return {};
  // The first call counts a final zero, the second one does not.
  text.resize(size);
  return text;
}

std::vector<unsigned char> FromBase64(const std::string& text) {
  const auto length = static_cast<DWORD>(text.size());
  DWORD size = 0;
  if (!CryptStringToBinaryA(text.data(), length, CRYPT_STRING_BASE64, nullptr, &size, nullptr, nullptr)) {
    return {};
  }
  std::vector<unsigned char> bytes(size);
  CryptStringToBinaryA(text.data(), length, CRYPT_STRING_BASE64, bytes.data(), &size, nullptr, nullptr);
  return bytes;
}

}  // namespace qv::devhost::calc
