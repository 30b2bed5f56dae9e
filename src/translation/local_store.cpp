#include "translation/local_store.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/file_io.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/unique_handle.h"

namespace qv {
namespace {

struct StoredFile {
  std::wstring path;
  std::wstring id;
};

/// The items of a folder by id: the file system's own order is not the same everywhere.
std::vector<StoredFile> ListItems(const std::wstring& folder) {
  std::vector<StoredFile> files;
  WIN32_FIND_DATAW found{};
  const UniqueFind search(FindFirstFileW((folder + L"\\*.json").c_str(), &found));
  if (!search) return files;
  do {
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) continue;
    const std::optional<std::wstring> id = ItemIdOf(found.cFileName);
    if (id) files.push_back({Concat(folder, L'\\', found.cFileName), *id});
  } while (FindNextFileW(search.Get(), &found));
  std::ranges::sort(files, {}, &StoredFile::id);
  return files;
}

/// Reads the store's folders one after the other, within one total.
class StoreReader {
 public:
  explicit StoreReader(const StoreLimits& limits) : limits_(limits), bytesLeft_(limits.totalBytes) {}

  /// `parse` turns an id and a file's bytes into an item, or nothing.
  template <typename Item, typename Parse>
  void Read(const std::wstring& folder, const Parse& parse, std::vector<Item>& items) {
    CreateDirectoryW(folder.c_str(), nullptr);
    for (const StoredFile& file : ListItems(folder)) {
      std::string bytes;
      const bool read =
          ReadWholeFile(file.path, bytes, std::min(limits_.itemBytes, bytesLeft_)) == FileRead::kRead;
      bytesLeft_ -= bytes.size();
      std::optional<Item> item = read ? parse(file.id, bytes) : std::nullopt;
      if (item) {
        items.push_back(std::move(*item));
      } else {
        PaneLog(Concat(L"Local store skipped ", read ? L"malformed " : L"unreadable or too large ", file.path,
                       L"\r\n"));
      }
    }
  }

 private:
  StoreLimits limits_;
  std::size_t bytesLeft_;
};

}  // namespace

std::wstring LocalStoreFolder() {
  const std::wstring base = ShellFolder(CSIDL_APPDATA);
  return base.empty() ? base : base + L"\\Quorvantis";
}

LocalSnapshot ReadLocalStore(const std::wstring& folder, const StoreLimits& limits) {
  LocalSnapshot snapshot;
  if (folder.empty()) return snapshot;
  CreateDirectoryW(folder.c_str(), nullptr);
  StoreReader reader(limits);
  for (const wchar_t* part : {L"\\glossaries", L"\\glossaries\\global"})
    reader.Read(folder + part, &ParseGlossaryFile, snapshot.glossaries);
  for (const wchar_t* part : {L"\\instructions", L"\\instructions\\global"})
    reader.Read(folder + part, &ParseInstructionFile, snapshot.instructions);
  return snapshot;
}

}  // namespace qv
