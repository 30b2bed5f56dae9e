#include "foundation/file_io.h"

#include <gtest/gtest.h>

#include "foundation/unique_handle.h"
#include "scratch_folder.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

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
  {
    const UniqueFile writer(CreateFileW(folder.Path(L"file").c_str(), GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                        nullptr));
    ASSERT_TRUE(writer);
    EXPECT_EQ(ReadWholeFile(folder.Path(L"file"), bytes), FileRead::kRead);
    EXPECT_EQ(ReadSettledFile(folder.Path(L"file"), bytes), FileRead::kFailed);
  }
  EXPECT_EQ(ReadSettledFile(folder.Path(L"file"), bytes), FileRead::kRead);
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
