#include "foundation/file_replacement.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "foundation/unique_handle.h"
#include "scratch_folder.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> FilesIn(const ScratchFolder& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder.Path()))
    names.push_back(entry.path().filename().string());
  return names;
}

TEST(FileReplacement, AFileIsMadeAndReplacedAndNothingElseIsLeft) {
  const ScratchFolder folder;
  const std::wstring path = folder.Path(L"\u4E2D.json");
  EXPECT_TRUE(WriteFileAtomically(path, "old"));
  const std::string large(3 * 1'048'576 + 5, 'x');
  EXPECT_TRUE(WriteFileAtomically(path, large));
  EXPECT_EQ(ReadBytes(path), large);
  EXPECT_TRUE(WriteFileAtomically(path, ""));
  EXPECT_EQ(fs::file_size(path), 0u);
  EXPECT_EQ(FilesIn(folder).size(), 1U);
}

TEST(FileReplacement, AFailureLeavesEverythingAsItWasAndSaysWhy) {
  const ScratchFolder folder;
  EXPECT_FALSE(WriteFileAtomically(folder.Path(L"missing\\x.json"), "new"));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));

  const std::wstring target = folder.Path(L"locked.json");
  WriteBytes(target, "old");
  {
    const UniqueFile lock(
        CreateFileW(target.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    EXPECT_FALSE(WriteFileAtomically(target, "new"));
    EXPECT_NE(GetLastError(), static_cast<DWORD>(ERROR_SUCCESS));
  }
  EXPECT_EQ(ReadBytes(target), "old");
  EXPECT_EQ(FilesIn(folder), std::vector<std::string>{"locked.json"});
}

TEST(FileReplacement, WritersDoNotDisturbOneAnother) {
  const ScratchFolder folder;
  const std::wstring target = folder.Path(L"x.json");
  WriteBytes(target, "old");
  // What another program keeps under the likeliest name is its own.
  WriteBytes(target + L".tmp", "theirs");
  std::atomic<int> written{0};
  std::vector<std::thread> writers;
  for (const char letter : {'a', 'b', 'c'}) {
    writers.emplace_back([&, letter] {
      for (int i = 0; i < 20; ++i)
        if (WriteFileAtomically(target, std::string(100'000, letter))) ++written;
    });
  }
  for (std::thread& writer : writers)
    writer.join();
  EXPECT_GE(written, 1);
  const std::string bytes = ReadBytes(target);
  EXPECT_EQ(bytes, std::string(100'000, bytes.empty() ? 'a' : bytes.front()));
  EXPECT_EQ(ReadBytes(target + L".tmp"), "theirs");
  EXPECT_EQ(FilesIn(folder).size(), 2U) << testing::PrintToString(FilesIn(folder));
}

TEST(FileReplacement, AFileThatIsThereIsNotMadeAnew) {
  const ScratchFolder folder;
  const std::wstring path = folder.Path(L"x.json");
  EXPECT_TRUE(MakeFileAtomically(path, "first"));
  EXPECT_FALSE(MakeFileAtomically(path, "second"));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
  EXPECT_EQ(ReadBytes(path), "first");
  EXPECT_EQ(FilesIn(folder).size(), 1U);
}

}  // namespace
}  // namespace qv
