#include "foundation/file_io.h"

#include <gtest/gtest.h>

#include "foundation/unique_handle.h"
#include "scratch_folder.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

TEST(FileIo, AtomicWriteReplacesTheFileAndLeavesNoTemporary) {
  const ScratchFolder folder;
  const std::wstring path = folder.Path(L"\u4E2D.json");
  EXPECT_TRUE(WriteFileAtomically(path, "old"));
  const std::string large(3 * 1'048'576 + 5, 'x');
  EXPECT_TRUE(WriteFileAtomically(path, large));
  EXPECT_EQ(ReadBytes(path), large);
  EXPECT_TRUE(WriteFileAtomically(path, ""));
  EXPECT_EQ(fs::file_size(path), 0u);
  EXPECT_FALSE(fs::exists(path + L".tmp"));
}

TEST(FileIo, FailedAtomicWriteLeavesEverythingAsItWas) {
  const ScratchFolder folder;
  EXPECT_FALSE(WriteFileAtomically(folder.Path(L"missing\\x.json"), "new"));

  const std::wstring target = folder.Path(L"locked.json");
  WriteBytes(target, "old");
  {
    const UniqueFile lock(
        CreateFileW(target.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_FALSE(WriteFileAtomically(target, "new"));
  }
  EXPECT_EQ(ReadBytes(target), "old");
  EXPECT_FALSE(fs::exists(target + L".tmp"));

  // Another process is just writing its temporary file: ours must not disturb it.
  {
    const UniqueFile other(
        CreateFileW((target + L".tmp").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    ASSERT_TRUE(other);
    EXPECT_FALSE(WriteFileAtomically(target, "new"));
    EXPECT_TRUE(fs::exists(target + L".tmp"));
  }
  EXPECT_EQ(ReadBytes(target), "old");
}

TEST(FileIo, MissingAndUnreadableFilesAreToldApart) {
  const ScratchFolder folder;
  std::string bytes = "left over";
  EXPECT_EQ(ReadWholeFile(folder.Path(L"none"), bytes), FileRead::kMissing);
  EXPECT_EQ(ReadWholeFile(folder.Path(L"none\\none"), bytes), FileRead::kMissing);
  EXPECT_EQ(bytes, "");
  EXPECT_EQ(ReadWholeFile(folder.Path(), bytes), FileRead::kFailed);
  WriteBytes(folder.Path(L"file"), std::string("a\0b", 3));
  EXPECT_EQ(ReadWholeFile(folder.Path(L"file"), bytes, 3), FileRead::kRead);
  EXPECT_EQ(bytes, std::string("a\0b", 3));
  EXPECT_EQ(ReadWholeFile(folder.Path(L"file"), bytes, 2), FileRead::kFailed);
  const UniqueFile lock(
      CreateFileW(folder.Path(L"file").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_EQ(ReadWholeFile(folder.Path(L"file"), bytes), FileRead::kFailed);
}

TEST(FileIo, ModuleDirectoryIsTheOneOfThisCode) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  EXPECT_EQ(GetModuleDirectory(), fs::path(path).parent_path().wstring());
}

}  // namespace
}  // namespace qv
