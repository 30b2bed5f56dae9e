#include "tools/image_undo.h"

#include <gtest/gtest.h>

#include <string>

namespace qv {
namespace {

const UndoBook kBook{0, L"Book.xlsx"};

ImageAnchor Anchor(const std::wstring& name, double left = 0) {
  return {L"Sheet1", name, 1, {}, 10, 10, left, 0};
}

ImageSnapshot Snapshot(const std::wstring& name, int mark, bool inBatch = false) {
  return {Anchor(name), kBook, {static_cast<std::byte>(mark)}, inBatch};
}

/// The mark of the picture's newest snapshot, which is taken; -1 when there is none.
int Take(ImageUndo& undo, const ImageAnchor& anchor, const UndoBook& book = kBook) {
  const auto taken = undo.TakeNewest(anchor, book);
  return taken ? std::to_integer<int>(taken->png.front()) : -1;
}

TEST(ImageUndo, GivesEachPictureItsOwnSnapshotOnce) {
  ImageUndo undo;
  undo.Keep(Snapshot(L"A", 1));
  undo.Keep(Snapshot(L"B", 2));
  EXPECT_EQ(Take(undo, Anchor(L"C")), -1);
  EXPECT_EQ(Take(undo, Anchor(L"A", 5)), -1);
  EXPECT_EQ(Take(undo, Anchor(L"A"), {0, L"Other.xlsx"}), -1);
  EXPECT_EQ(Take(undo, Anchor(L"A")), 1);
  EXPECT_EQ(Take(undo, Anchor(L"A")), -1);
  EXPECT_EQ(Take(undo, Anchor(L"B")), 2);
}

TEST(ImageUndo, KeepsTheFirstAndTheNewestOfAPicture) {
  ImageUndo undo;
  for (int mark = 1; mark <= 200; ++mark)
    undo.Keep(Snapshot(L"A", mark % 100));
  EXPECT_EQ(Take(undo, Anchor(L"A")), 0);
  EXPECT_EQ(Take(undo, Anchor(L"A")), 1);
  EXPECT_EQ(Take(undo, Anchor(L"A")), -1);
}

TEST(ImageUndo, FollowsAPictureThatBecameAnother) {
  ImageUndo undo;
  undo.Keep(Snapshot(L"A", 1));
  undo.Keep(Snapshot(L"B", 2));
  undo.Follow(Anchor(L"A"), Anchor(L"A", 50), kBook);
  EXPECT_EQ(Take(undo, Anchor(L"A")), -1);
  EXPECT_EQ(Take(undo, Anchor(L"A", 50)), 1);
  EXPECT_EQ(Take(undo, Anchor(L"B")), 2);
}

TEST(ImageUndo, ABatchIsTakenNewestFirstAndAllOfIt) {
  ImageUndo undo;
  undo.Keep(Snapshot(L"A", 1, true));
  undo.Keep(Snapshot(L"X", 9));
  undo.Keep(Snapshot(L"A", 2, true));
  undo.Keep(Snapshot(L"B", 3, true));
  std::vector<ImageSnapshot> batch = undo.TakeBatch();
  ASSERT_EQ(batch.size(), 3U);
  EXPECT_EQ(std::to_integer<int>(batch[0].png.front()), 3);
  EXPECT_EQ(std::to_integer<int>(batch[2].png.front()), 1);
  EXPECT_TRUE(undo.TakeBatch().empty());
  EXPECT_EQ(Take(undo, Anchor(L"X")), 9);
  undo.PutBack(std::move(batch[1]));
  EXPECT_EQ(undo.TakeBatch().size(), 1U);
  undo.Keep(Snapshot(L"C", 4, true));
  undo.Keep(Snapshot(L"X", 8));
  undo.ClearBatch();
  EXPECT_TRUE(undo.TakeBatch().empty());
  EXPECT_EQ(Take(undo, Anchor(L"X")), 8);
}

TEST(ImageUndo, ASnapshotWithoutAPictureIsNoneForOnePictureButCountsInABatch) {
  ImageUndo undo;
  undo.Keep({Anchor(L"A"), kBook, {}, true});
  EXPECT_EQ(Take(undo, Anchor(L"A")), -1);
  EXPECT_EQ(undo.TakeBatch().size(), 1U);
}

TEST(ImageUndo, GivesUpTheOldestPicturesWhenTheyAreTooMany) {
  constexpr std::size_t kThird = 100;
  ImageUndo undo(3 * kThird);
  for (const wchar_t* name : {L"A", L"B", L"C", L"D"})
    undo.Keep({Anchor(name), kBook, std::vector<std::byte>(kThird), true});
  const std::vector<ImageSnapshot> batch = undo.TakeBatch();
  ASSERT_EQ(batch.size(), 4U);
  EXPECT_EQ(batch[2].png.size(), kThird);
  EXPECT_TRUE(batch[3].png.empty());
}

}  // namespace
}  // namespace qv
