#include "services/agent_files.h"

#include <windows.h>

#include <chrono>
#include <thread>
#include <utility>

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
/// How often, and how far apart, a file is looked at that its owner may just be writing.
constexpr int kLooks = 6;
constexpr auto kBetweenLooks = std::chrono::milliseconds(200);

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

/// 0, or the system's error number.
DWORD MakeFolderOf(const std::wstring& path) {
  return MakeFolder(path.substr(0, path.rfind(L'\\')));
}

/// A configuration file as one look found it.
struct Contents {
  bool exists = false;
  std::string bytes;

  friend bool operator==(const Contents&, const Contents&) = default;
};

/// Nothing while somebody writes the file, or when it cannot be read.
std::optional<Contents> LookAt(const std::wstring& path) {
  Contents seen;
  const FileRead read = ReadSettledFile(path, seen.bytes);
  if (read == FileRead::kFailed) return std::nullopt;
  seen.exists = read == FileRead::kRead;
  return seen;
}

/// How one look at the file ended.
struct Step {
  /// What went wrong; empty when the entry is written.
  std::wstring error;
  /// What went wrong may pass by itself.
  bool mayPass = false;
};

/// Of a file that somebody holds, Windows says to who would replace it that access is denied.
Step NotWritten(DWORD error) {
  return {WriteFailed(error),
          MeansInUse(error) || error == ERROR_ACCESS_DENIED || error == ERROR_ALREADY_EXISTS};
}

/// A copy of a file as it was, gone with this object unless it is kept. One that an earlier change made
/// within the same second is replaced and stays.
class Backup {
 public:
  explicit Backup(const std::wstring& path) : source_(path), path_(BackupPathNow(path)) {}
  Backup(const Backup&) = delete;
  Backup& operator=(const Backup&) = delete;
  ~Backup() {
    if (!isOurs_) return;
    // A write-protected file's copy is so too.
    SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path_.c_str());
  }

  /// On failure the thread's last error says why.
  [[nodiscard]] bool Make() {
    isOurs_ = CopyFileW(source_.c_str(), path_.c_str(), TRUE) != FALSE;
    isMade_ = isOurs_ || (GetLastError() == ERROR_FILE_EXISTS &&
                          CopyFileW(source_.c_str(), path_.c_str(), FALSE) != FALSE);
    return isMade_;
  }
  /// Where it is; empty when none was made.
  [[nodiscard]] std::wstring Keep() {
    isOurs_ = false;
    return isMade_ ? path_ : std::wstring();
  }

 private:
  const std::wstring& source_;
  std::wstring path_;
  bool isMade_ = false;
  /// Deleted with this object.
  bool isOurs_ = false;
};

/// One rewriting of one agent's file.
class Rewriting {
 public:
  Rewriting(AgentKind kind, const ProxyAccess& access, ConfigureResult& result)
      : kind_(kind), access_(access), result_(result) {}

  Step Try() {
    std::optional<Contents> seen = LookAt(result_.configPath);
    if (!seen) return {kReadFailed, true};
    const std::optional<Contents> before = std::exchange(blank_, std::nullopt);
    if (LooksUnfinished(*seen) && before != seen) {
      blank_ = std::move(seen);
      return {kBusy, true};
    }
    const auto changed = NewContents(seen->bytes);
    if (!changed) return {kNotRewritable, true};
    Backup backup(result_.configPath);
    if (!seen->bytes.empty() && !backup.Make()) return {kBackupFailed, MeansInUse(GetLastError())};
    Step step = Write(*changed, *seen);
    if (!step.mayPass) result_.backupPath = backup.Keep();
    return step;
  }

 private:
  /// An owner who writes a file anew empties or deletes it first, so a file without contents is believed only
  /// when the next look finds the same.
  [[nodiscard]] bool LooksUnfinished(const Contents& seen) const {
    return kind_ != AgentKind::kOpenCode && seen.bytes.find_first_not_of(" \t\r\n") == std::string::npos;
  }

  [[nodiscard]] std::optional<std::string> NewContents(std::string_view bytes) const {
    return kind_ == AgentKind::kOpenCode ? ToUtf8(OpenCodeConfig(access_)) : WithMcpEntry(kind_, bytes);
  }

  /// A file that was missing is only made: one that its owner has made meanwhile is not replaced.
  [[nodiscard]] Step Write(std::string_view bytes, const Contents& seen) const {
    if (const DWORD error = MakeFolderOf(result_.configPath)) return {WriteFailed(error)};
    FileReplacement replacement(result_.configPath, Durability::kOnDisk);
    if (!replacement.Write(bytes)) return NotWritten(GetLastError());
    // The agents write these files themselves, without regard to us: the last look comes when all that is
    // slow is done.
    if (LookAt(result_.configPath) != seen) return {kBusy, true};
    const bool written = seen.exists ? replacement.Replace() : replacement.Make();
    return written ? Step{} : NotWritten(GetLastError());
  }

  AgentKind kind_;
  const ProxyAccess& access_;
  ConfigureResult& result_;
  /// What the last look found, when that was a file without contents or none.
  std::optional<Contents> blank_;
};

}  // namespace

ConfigureResult ConfigureAgent(AgentKind kind, const ProxyAccess& access) {
  ConfigureResult result;
  result.configPath = AgentConfigPath(kind);
  if (result.configPath.empty()) {
    result.error = kNoConfigPath;
    return result;
  }
  const NamedLock lock(kWriterLock, kWriterPatience);
  Step step{kBusy, static_cast<bool>(lock)};
  Rewriting rewriting(kind, access, result);
  for (int look = 0; step.mayPass && look < kLooks; ++look) {
    if (look > 0) std::this_thread::sleep_for(kBetweenLooks);
    step = rewriting.Try();
  }
  result.success = step.error.empty();
  result.error = std::move(step.error);
  return result;
}

std::wstring WriteOpenCodeConfig(const ProxyAccess& access) {
  const std::wstring path = AgentConfigPath(AgentKind::kOpenCode);
  if (path.empty()) return kNoConfigPath;
  const NamedLock lock(kWriterLock, kWriterPatience);
  if (!lock) return kBusy;
  if (const DWORD error = MakeFolderOf(path)) return WriteFailed(error);
  const bool written = WriteFileAtomically(path, ToUtf8(OpenCodeConfig(access)), Durability::kOnDisk);
  return written ? std::wstring() : WriteFailed(GetLastError());
}

bool IsAgentConfigured(AgentKind kind) {
  std::string bytes;
  const std::wstring path = AgentConfigPath(kind);
  return !path.empty() && ReadWholeFile(path, bytes) == FileRead::kRead && PointsAtMcpServer(kind, bytes);
}

}  // namespace qv
