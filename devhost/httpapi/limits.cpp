#include "httpapi/limits.h"

#include <windows.h>

#include <array>
#include <cwchar>
#include <string_view>

namespace qv::devhost {
namespace {

using Value = std::array<wchar_t, 64>;

bool Read(const wchar_t* name, Value& value) {
  const DWORD length = GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
  return length > 0 && length < value.size();
}

/// A positive number, or what `fallback` says.
template <typename Number>
Number ReadNumber(const wchar_t* name, Number fallback) {
  Value value{};
  if (!Read(name, value)) return fallback;
  const int number = static_cast<int>(std::wcstol(value.data(), nullptr, 10));
  return number > 0 ? static_cast<Number>(number) : fallback;
}

}  // namespace

HttpLimits LimitsFromEnvironment() {
  HttpLimits limits;
  limits.headBytes = ReadNumber(L"QV_DEVHOST_HTTP_HEAD_BYTES", limits.headBytes);
  limits.waitMs = ReadNumber(L"QV_DEVHOST_HTTP_WAIT_MS", limits.waitMs);
  return limits;
}

bool IsToldToFail(const wchar_t* function) {
  Value value{};
  return Read(L"QV_DEVHOST_HTTP_FAIL", value) && std::wstring_view(value.data()) == function;
}

}  // namespace qv::devhost
