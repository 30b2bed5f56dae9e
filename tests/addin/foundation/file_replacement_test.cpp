#include "foundation/file_replacement.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

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
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
  }
  SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(WriteFileAtomically(target, "new"));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
  SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
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

TEST(FileReplacement, WhoeverReadsMeanwhileFindsTheOneFileOrTheOther) {
  const ScratchFolder folder;
  const std::wstring path = folder.Path(L"x.json");
  WriteBytes(path, "old");
  std::atomic<bool> done{false};
  int missing = 0;
  std::thread reader([&] {
    while (!done)
      if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) ++missing;
  });
  for (int i = 0; i < 200; ++i)
    EXPECT_TRUE(WriteFileAtomically(path, "new"));
  done = true;
  reader.join();
  EXPECT_EQ(missing, 0);
}

TEST(FileReplacement, WhatIsWrittenBesideTheFileIsNotSeenBeforeTheMove) {
  const ScratchFolder folder;
  const std::wstring path = folder.Path(L"x.json");
  WriteBytes(path, "old");
  {
    FileReplacement dropped(path, Durability::kOnDisk);
    EXPECT_TRUE(dropped.Write("dropped"));
    EXPECT_EQ(FilesIn(folder).size(), 2U);
  }
  EXPECT_EQ(FilesIn(folder).size(), 1U);
  EXPECT_EQ(ReadBytes(path), "old");
  FileReplacement replacement(path, Durability::kOnDisk);
  EXPECT_TRUE(replacement.Write("new"));
  EXPECT_EQ(ReadBytes(path), "old");
  EXPECT_TRUE(replacement.Replace());
  EXPECT_EQ(ReadBytes(path), "new");
}

TEST(FileReplacement, AFileThatIsThereIsNotMadeAnew) {
  const ScratchFolder folder;
  const std::wstring path = folder.Path(L"x.json");
  for (const bool isThere : {false, true}) {
    FileReplacement replacement(path, Durability::kOnDisk);
    EXPECT_TRUE(replacement.Write(isThere ? "second" : "first"));
    EXPECT_EQ(replacement.Make(), !isThere);
    if (isThere) {
      EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
    }
  }
  EXPECT_EQ(ReadBytes(path), "first");
  EXPECT_EQ(FilesIn(folder).size(), 1U);
}

/// The access list of a file in the system's text form.
std::wstring Rights(const std::wstring& path) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  EXPECT_EQ(GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                  nullptr, nullptr, &descriptor),
            static_cast<DWORD>(ERROR_SUCCESS));
  wchar_t* text = nullptr;
  EXPECT_TRUE(ConvertSecurityDescriptorToStringSecurityDescriptorW(
      descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr));
  const std::wstring rights = text ? text : L"";
  LocalFree(text);
  LocalFree(descriptor);
  return rights;
}

TEST(FileReplacement, RightsAndAttributesStay) {
  const ScratchFolder folder;
  const std::wstring path = folder.Path(L"x.json");
  WriteBytes(path, "old");
  const std::wstring usual = Rights(path);
  // What is said last is what everybody may do.
  const std::wstring fewer = usual.substr(0, usual.rfind(L'('));
  PSECURITY_DESCRIPTOR own = nullptr;
  ASSERT_TRUE(
      ConvertStringSecurityDescriptorToSecurityDescriptorW(fewer.c_str(), SDDL_REVISION_1, &own, nullptr));
  EXPECT_TRUE(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, own));
  LocalFree(own);
  ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN));
  const std::wstring rights = Rights(path);
  ASSERT_NE(rights, usual);

  EXPECT_TRUE(WriteFileAtomically(path, "new"));
  EXPECT_EQ(Rights(path), rights);
  EXPECT_EQ(GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN,
            static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN));
  EXPECT_EQ(ReadBytes(path), "new");
}

}  // namespace
}  // namespace qv
