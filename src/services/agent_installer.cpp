#include "services/agent_installer.h"

#include <windows.h>

#include "foundation/file_io.h"
#include "foundation/temporary_file.h"
#include "foundation/text.h"
#include "services/agent_places.h"
#include "services/folder_removal.h"
#include "services/named_lock.h"
#include "services/package_fetch.h"
#include "services/package_unpack.h"

namespace qv {
namespace {

constexpr wchar_t kBusy[] = L"正在安装 OpenCode，请稍候";
constexpr wchar_t kInUse[] = L"旧版本正在使用，未作修改：";
constexpr wchar_t kNoRights[] = L"没有权限删除旧版本，未作修改：";
constexpr wchar_t kNotRemovable[] = L"无法删除旧版本，未作修改：";
constexpr wchar_t kPartlyRemoved[] = L"旧版本未能完全删除：";
constexpr wchar_t kNoTemporary[] = L"无法创建临时文件";
constexpr wchar_t kFetchFailed[] = L"下载 OpenCode 安装包失败";
constexpr wchar_t kFolderFailed[] = L"无法创建安装目录";
constexpr wchar_t kUnpackFailed[] = L"解压 OpenCode 安装包失败";
constexpr wchar_t kNoExecutable[] = L"安装包中未找到 opencode.exe";

std::wstring ObstacleText(const wchar_t* what, const RemovalObstacle& obstacle) {
  InstallerLog(Concat(L"removal refused (", obstacle.error, L"): ", obstacle.path));
  return Concat(what, obstacle.path);
}

/// Makes way for the new copy; the text of what went wrong, or empty. Nothing is deleted unless all can be.
std::wstring ClearFolder(const std::wstring& directory) {
  if (const auto obstacle = FindRemovalObstacle(directory))
    return ObstacleText(RefusalText(obstacle->error), *obstacle);
  if (const auto kept = EmptyFolder(directory)) return ObstacleText(kPartlyRemoved, *kept);
  return MakeFolder(directory) == ERROR_SUCCESS ? L"" : kFolderFailed;
}

bool Unpack(const std::wstring& package, const std::wstring& directory) {
  if (ExtractWithTar(package, directory)) return true;
  InstallerLog(L"tar failed, trying shell fallback");
  // What tar left would be taken for what the shell has copied.
  if (!ClearFolder(directory).empty()) return false;
  return ExtractWithShell(package, directory, [&] { return LocateOpenCode(directory); });
}

/// The text of what went wrong, or empty. The package is gone afterwards.
std::wstring PutInPlace(const std::wstring& location, const std::wstring& directory) {
  const TemporaryFile package(L"qvopencode", L".zip");
  if (package.Path().empty()) return kNoTemporary;
  if (!FetchPackage(location, package.Path())) return kFetchFailed;
  InstallerLog(Concat(L"downloaded zip to ", package.Path()));
  const std::wstring obstacle = ClearFolder(directory);
  if (!obstacle.empty()) return obstacle;
  return Unpack(package.Path(), directory) ? L"" : kUnpackFailed;
}

InstallResult Failed(std::wstring error) {
  InstallerLog(Concat(L"failed: ", error));
  InstallResult result;
  result.error = std::move(error);
  return result;
}

}  // namespace

const wchar_t* RefusalText(unsigned long error) {
  if (MeansInUse(error)) return kInUse;
  return MeansNoRights(error) ? kNoRights : kNotRemovable;
}

std::wstring DefaultPackageLocation() {
  return QV_OPENCODE_PACKAGE;
}

InstallResult InstallOpencode(const std::wstring& location, const std::wstring& directory) {
  const NamedLock lock(kOwnCopyLock, kOwnCopyPatience);
  if (!lock) return Failed(kBusy);
  std::wstring error = PutInPlace(location, directory);
  if (!error.empty()) return Failed(std::move(error));
  InstallResult result;
  result.exePath = LocateOpenCode(directory);
  if (result.exePath.empty()) return Failed(kNoExecutable);
  const std::string output = AgentVersionOutput(result.exePath);
  InstallerLog(Concat(L"opencode version: ", FromUtf8(output)));
  result.version = FirstLine(output);
  result.success = true;
  return result;
}

}  // namespace qv
