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

/// Keeps the snapshot of a picture that is replaced then.
void Keep(ImageUndo& undo, ImageSnapshot snapshot) {
  EXPECT_GT(undo.Keep(std::move(snapshot)), 0U);
  undo.Settle();
}

/// The mark of the snapshot, which is dropped; -1 when there is none.
int Drop(ImageUndo& undo, const ImageSnapshot* snapshot) {
  if (snapshot == nullptr) return -1;
  const int mark = snapshot->png.empty() ? 0 : std::to_integer<int>(snapshot->png.front());
  undo.Drop(snapshot->serial);
  return mark;
}

/// The mark of the picture's newest snapshot, which is dropped.
int Take(ImageUndo& undo, const ImageAnchor& anchor, const UndoBook& book = kBook) {
  return Drop(undo, undo.FindNewest(anchor, book));
}

int TakeOfBatch(ImageUndo& undo, std::uint64_t before = ImageUndo::kAll) {
  return Drop(undo, undo.FindInBatch(before));
}

TEST(ImageUndo, GivesEachPictureItsOwnSnapshotOnce) {
  ImageUndo undo;
  Keep(undo, Snapshot(L"A", 1));
  Keep(undo, Snapshot(L"B", 2));
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
    Keep(undo, Snapshot(L"A", mark % 100));
  EXPECT_EQ(Take(undo, Anchor(L"A")), 0);
  EXPECT_EQ(Take(undo, Anchor(L"A")), 1);
  EXPECT_EQ(Take(undo, Anchor(L"A")), -1);
}

TEST(ImageUndo, FollowsAPictureThatBecameAnother) {
  ImageUndo undo;
  Keep(undo, Snapshot(L"A", 1));
  Keep(undo, Snapshot(L"B", 2));
  undo.Follow(Anchor(L"A"), Anchor(L"A", 50), kBook);
  EXPECT_EQ(Take(undo, Anchor(L"A")), -1);
  EXPECT_EQ(Take(undo, Anchor(L"A", 50)), 1);
  EXPECT_EQ(Take(undo, Anchor(L"B")), 2);
}

TEST(ImageUndo, ASnapshotWhosePictureStayedCostsNoOtherItsPlace) {
  ImageUndo undo;
  for (const int mark : {1, 2})
    Keep(undo, Snapshot(L"A", mark));
  undo.Drop(undo.Keep(Snapshot(L"A", 3)));
  EXPECT_EQ(Take(undo, Anchor(L"A")), 2);
  EXPECT_EQ(Take(undo, Anchor(L"A")), 1);
}

TEST(ImageUndo, ABatchIsFoundNewestFirstAndNothingElse) {
  ImageUndo undo;
  Keep(undo, Snapshot(L"A", 1, true));
  Keep(undo, Snapshot(L"X", 9));
  Keep(undo, Snapshot(L"A", 2, true));
  const std::uint64_t third = undo.FindInBatch()->serial + 1;
  Keep(undo, Snapshot(L"B", 3, true));
  // What failed or came later is passed over.
  EXPECT_EQ(TakeOfBatch(undo, third), 2);
  EXPECT_EQ(TakeOfBatch(undo), 3);
  EXPECT_EQ(TakeOfBatch(undo), 1);
  EXPECT_EQ(TakeOfBatch(undo), -1);
  EXPECT_EQ(Take(undo, Anchor(L"X")), 9);
}

TEST(ImageUndo, AClearedBatchLeavesTheOthers) {
  ImageUndo undo;
  Keep(undo, Snapshot(L"C", 4, true));
  Keep(undo, Snapshot(L"X", 8));
  undo.ClearBatch();
  EXPECT_EQ(undo.FindInBatch(), nullptr);
  EXPECT_EQ(Take(undo, Anchor(L"X")), 8);
}

TEST(ImageUndo, ASnapshotWithoutAPictureIsNoneForOnePictureButCountsInABatch) {
  ImageUndo undo;
  Keep(undo, {Anchor(L"A"), kBook, {}, true});
  EXPECT_EQ(Take(undo, Anchor(L"A")), -1);
  EXPECT_NE(undo.FindInBatch(), nullptr);
}

TEST(ImageUndo, TheOldestWithAPictureIsTheFirst) {
  ImageUndo undo(3);
  Keep(undo, {Anchor(L"A"), kBook, std::vector<std::byte>(2, std::byte{7})});
  for (const int mark : {1, 2, 3})
    Keep(undo, Snapshot(L"A", mark));
  EXPECT_EQ(Take(undo, Anchor(L"A")), 3);
  EXPECT_EQ(Take(undo, Anchor(L"A")), 7);
  // Given up for its size, the first one leaves that place to the next.
  Keep(undo, {Anchor(L"A"), kBook, std::vector<std::byte>(3, std::byte{7})});
  for (const int mark : {4, 5, 6})
    Keep(undo, Snapshot(L"A", mark));
  EXPECT_EQ(Take(undo, Anchor(L"A")), 6);
  EXPECT_EQ(Take(undo, Anchor(L"A")), 4);
  EXPECT_EQ(Take(undo, Anchor(L"A")), -1);
}

TEST(ImageUndo, GivesUpTheOldestPicturesWhenTheyAreTooMany) {
  constexpr std::size_t kThird = 100;
  ImageUndo undo(3 * kThird);
  for (const wchar_t* name : {L"A", L"B", L"C", L"D"})
    Keep(undo, {Anchor(name), kBook, std::vector<std::byte>(kThird), true});
  std::vector<std::size_t> sizes;
  for (const ImageSnapshot* one = undo.FindInBatch(); one != nullptr; one = undo.FindInBatch(one->serial))
    sizes.push_back(one->png.size());
  EXPECT_EQ(sizes, (std::vector<std::size_t>{kThird, kThird, kThird, 0}));
}

}  // namespace
}  // namespace qv
