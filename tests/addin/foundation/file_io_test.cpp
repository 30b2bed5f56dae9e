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

TEST(FileIo, AFileInUseIsToldFromWhatIsForbidden) {
  for (const DWORD error : {ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION, ERROR_USER_MAPPED_FILE})
    EXPECT_TRUE(MeansInUse(error)) << error;
  for (const DWORD error : {ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT, ERROR_FILE_NOT_FOUND})
    EXPECT_FALSE(MeansInUse(error)) << error;
}

TEST(FileIo, AFolderIsMadeWithThoseAboveItAndMayBeThere) {
  const ScratchFolder folder;
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(MakeFolder(folder.Path(L"a\\b")), static_cast<DWORD>(ERROR_SUCCESS));
  EXPECT_TRUE(fs::is_directory(folder.Path(L"a\\b")));
  EXPECT_NE(MakeFolder(folder.Path(L"a\\?\\c")), static_cast<DWORD>(ERROR_SUCCESS));
}

TEST(FileIo, ModuleDirectoryIsTheOneOfThisCode) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  EXPECT_EQ(GetModuleDirectory(), fs::path(path).parent_path().wstring());
}

}  // namespace
}  // namespace qv
