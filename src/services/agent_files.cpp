#include "services/agent_files.h"

#include <windows.h>

#include <shlobj.h>

#include "foundation/file_io.h"
#include "foundation/file_replacement.h"
#include "foundation/text.h"
#include "services/agent_config.h"
#include "services/agent_places.h"
#include "services/named_lock.h"

namespace qv {
namespace {

constexpr wchar_t kWriterLock[] = L"Local\\Quorvantis.AgentConfig";
constexpr auto kWriterPatience = std::chrono::seconds(10);
/// How often a file that its owner changes meanwhile is read anew.
constexpr int kTries = 3;

constexpr wchar_t kNoConfigPath[] = L"无法确定该 Agent 的配置文件路径";
constexpr wchar_t kBackupFailed[] = L"备份原配置文件失败";
constexpr wchar_t kReadFailed[] = L"无法读取该 Agent 的配置文件";
constexpr wchar_t kNotRewritable[] = L"配置文件的格式无法识别，或 qv-excel 以其他写法定义，文件未修改";
constexpr wchar_t kBusy[] = L"配置文件正被其他程序修改，请稍候再试";

std::wstring WriteFailed(DWORD error) {
  return Concat(L"写入配置文件失败 (", error, L")");
}

std::wstring BackupPathNow(const std::wstring& path) {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return Concat(path, L".backup.", Padded{now.wYear, 4}, Padded{now.wMonth, 2}, Padded{now.wDay, 2}, L'_',
                Padded{now.wHour, 2}, Padded{now.wMinute, 2}, Padded{now.wSecond, 2});
}

/// The text of what went wrong, or empty.
std::wstring WriteConfigFile(const std::wstring& path, std::string_view bytes) {
  const int made = SHCreateDirectoryExW(nullptr, path.substr(0, path.rfind(L'\\')).c_str(), nullptr);
  if (made != ERROR_SUCCESS && made != ERROR_ALREADY_EXISTS && made != ERROR_FILE_EXISTS)
    return WriteFailed(static_cast<DWORD>(made));
  return WriteFileAtomically(path, bytes) ? std::wstring() : WriteFailed(GetLastError());
}

std::optional<std::string> NewContents(AgentKind kind, std::string_view bytes, const ProxyAccess& access) {
  return kind == AgentKind::kOpenCode ? ToUtf8(OpenCodeConfig(access)) : WithMcpEntry(kind, bytes);
}

/// Copies a file that holds anything; false when that failed.
bool BackupConfig(std::string_view bytes, ConfigureResult& result) {
  if (bytes.empty()) return true;
  std::wstring backup = BackupPathNow(result.configPath);
  if (!CopyFileW(result.configPath.c_str(), backup.c_str(), FALSE)) return false;
  result.backupPath = std::move(backup);
  return true;
}

/// One try. Nothing when the file was changed by somebody else meanwhile; otherwise what went wrong, or
/// empty.
std::optional<std::wstring> TryConfigure(AgentKind kind, const ProxyAccess& access, ConfigureResult& result) {
  std::string bytes;
  if (ReadWholeFile(result.configPath, bytes) == FileRead::kFailed) return kReadFailed;
  const auto changed = NewContents(kind, bytes, access);
  if (!changed) return kNotRewritable;
  if (!BackupConfig(bytes, result)) return kBackupFailed;
  // The agents write these files themselves, without regard to us.
  std::string now;
  if (ReadWholeFile(result.configPath, now) == FileRead::kFailed || now != bytes) return std::nullopt;
  return WriteConfigFile(result.configPath, *changed);
}

}  // namespace

ConfigureResult ConfigureAgent(AgentKind kind, const ProxyAccess& access) {
  ConfigureResult result;
  result.configPath = AgentConfigPath(kind);
  result.error = kBusy;
  if (result.configPath.empty()) {
    result.error = kNoConfigPath;
    return result;
  }
  const NamedLock lock(kWriterLock, kWriterPatience);
  for (int i = 0; lock && i < kTries; ++i) {
    auto error = TryConfigure(kind, access, result);
    if (!error) continue;
    result.success = error->empty();
    result.error = std::move(*error);
    break;
  }
  return result;
}

std::wstring WriteOpenCodeConfig(const ProxyAccess& access) {
  const std::wstring path = AgentConfigPath(AgentKind::kOpenCode);
  if (path.empty()) return kNoConfigPath;
  const NamedLock lock(kWriterLock, kWriterPatience);
  return lock ? WriteConfigFile(path, ToUtf8(OpenCodeConfig(access))) : std::wstring(kBusy);
}

bool IsAgentConfigured(AgentKind kind) {
  std::string bytes;
  const std::wstring path = AgentConfigPath(kind);
  return !path.empty() && ReadWholeFile(path, bytes) == FileRead::kRead && PointsAtMcpServer(kind, bytes);
}

}  // namespace qv
