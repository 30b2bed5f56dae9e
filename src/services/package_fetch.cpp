#include "services/package_fetch.h"

#include <windows.h>

#include <shlwapi.h>
#include <winhttp.h>

#include <array>
#include <cstdint>
#include <optional>

#include "foundation/https_client.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

constexpr std::wstring_view kFileScheme = L"file:///";
constexpr wchar_t kUserAgent[] = L"QuorvantisAgentInstaller/1.0";
/// For each step of a download, so that one whose server falls silent ends.
constexpr int kStepTimeoutMs = 30'000;
constexpr int kStatusOk = 200;
/// Many times what a package has; a server that never ends must not fill the disk.
constexpr std::uint64_t kMaxPackageBytes = std::uint64_t{1} << 30;

bool CopyLocalFile(const std::wstring& location, const std::wstring& packagePath) {
  std::array<wchar_t, MAX_PATH> path{};
  auto size = static_cast<DWORD>(path.size());
  if (FAILED(PathCreateFromUrlW(location.c_str(), path.data(), &size, 0))) return false;
  InstallerLog(Concat(L"file URL copy: ", path.data()));
  return CopyFileW(path.data(), packagePath.c_str(), FALSE) != FALSE;
}

std::optional<HttpRequest> RequestFor(const std::wstring& location) {
  URL_COMPONENTS parts{};
  parts.dwStructSize = sizeof(parts);
  parts.dwSchemeLength = parts.dwHostNameLength = parts.dwUrlPathLength = parts.dwExtraInfoLength =
      static_cast<DWORD>(-1);
  if (!WinHttpCrackUrl(location.c_str(), static_cast<DWORD>(location.size()), 0, &parts)) return std::nullopt;
  HttpRequest request;
  request.endpoint = {std::wstring(parts.lpszHostName, parts.dwHostNameLength), parts.nPort,
                      parts.nScheme == INTERNET_SCHEME_HTTPS};
  request.verb = L"GET";
  request.path = std::wstring(parts.lpszUrlPath, parts.dwUrlPathLength) +
                 std::wstring(parts.lpszExtraInfo, parts.dwExtraInfoLength);
  request.path.resize(request.path.find(L'#') == std::wstring::npos ? request.path.size()
                                                                    : request.path.find(L'#'));
  if (request.path.empty()) request.path = L"/";
  request.userAgent = kUserAgent;
  request.timeouts = {kStepTimeoutMs, kStepTimeoutMs, kStepTimeoutMs, kStepTimeoutMs};
  request.followRedirects = true;
  return request;
}

bool Download(const std::wstring& location, const std::wstring& packagePath) {
  const auto request = RequestFor(location);
  if (!request) {
    InstallerLog(Concat(L"WinHttpCrackUrl failed for ", location));
    return false;
  }
  const UniqueFile file(CreateFileW(packagePath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  std::uint64_t total = 0;
  const HttpResponse response = SendHttp(*request, [&](int status, std::string_view piece) {
    DWORD written = 0;
    total += piece.size();
    return status == kStatusOk && total <= kMaxPackageBytes &&
           WriteFile(file.Get(), piece.data(), static_cast<DWORD>(piece.size()), &written, nullptr) &&
           written == piece.size();
  });
  if (response.status == kStatusOk) return response.ok;
  InstallerLog(response.status == 0 ? Concat(L"download failed: ", response.error)
                                    : Concat(L"download http status ", response.status));
  return false;
}

bool IsFileUrl(std::wstring_view location) {
  return EqualsIgnoreAsciiCase(location.substr(0, kFileScheme.size()), kFileScheme);
}

}  // namespace

void InstallerLog(std::wstring_view text) {
  PaneLog(Concat(L"[AgentInstaller] ", text, L"\r\n"));
}

bool FetchPackage(const std::wstring& location, const std::wstring& packagePath) {
  const bool fetched =
      IsFileUrl(location) ? CopyLocalFile(location, packagePath) : Download(location, packagePath);
  if (!fetched) DeleteFileW(packagePath.c_str());
  return fetched;
}

}  // namespace qv
