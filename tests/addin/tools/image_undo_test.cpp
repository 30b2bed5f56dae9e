#include <new>
#include <string>

#include "addin/tools/image_fixture.h"
#include "addin/tools/import_fault.h"
#include "foundation/json_reader.h"
#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv::test {
namespace {

constexpr long kAutoShape = 1;

/// How many looks at the clock end as they would when memory ran out.
int clockFailures = 0;

INT_PTR WINAPI FailingClock() {
  if (clockFailures > 0) {
    --clockFailures;
    throw std::bad_alloc();
  }
  ULONGLONG now = 0;
  QueryUnbiasedInterruptTime(&now);
  return static_cast<INT_PTR>(now / 10'000);
}

class ImageUndoTest : public ImageTest {
 protected:
  /// Pictures P1 to P3, each replaced as one of a batch; the anchor of the first.
  [[nodiscard]] std::wstring ReplacedBatch() {
    std::wstring first;
    for (int number = 3; number >= 1; --number) {
      AddPicture(Concat(L"P", number), 20, 20, number);
      first = Replaced(AnchorOf(Concat(L"P", number)), *Pattern(20, 20, 10 + number), true);
    }
    return first;
  }

  /// What a batch undo and an action answer that comes in between its slices.
  [[nodiscard]] std::vector<std::wstring> BatchUndoAnd(const std::wstring& action,
                                                       const std::wstring& members = {}) {
    engine.Faults().Fail({.member = "Shapes.AddPicture", .slowMs = 70});
    bool asked = false;
    engine.Faults().OnCall("Shapes.AddPicture", [&, this] {
      if (!std::exchange(asked, true))
        images->HandleImageTranslateMessage(action, Concat(LR"({"requestId":"r2")", members, L'}'));
    });
    panel.scripts.clear();
    images->HandleImageTranslateMessage(L"imageTranslateBatchUndo", LR"({"requestId":"r1"})");
    const ULONGLONG start = GetTickCount64();
    while (panel.scripts.size() < 2 && GetTickCount64() - start < 30'000)
      PumpMessages();
    engine.Faults().Clear();
    return panel.scripts;
  }

  /// The anchor that a replacement answered.
  [[nodiscard]] std::wstring Replaced(const std::wstring& anchor, const PictureData& picture,
                                      bool inBatch = false) {
    const std::wstring result = Replace(anchor, picture, inBatch);
    EXPECT_TRUE(result.starts_with(LR"({"ok":true,"replaced":true,"hasUndo":true)")) << ToUtf8(result);
    return std::wstring(JsonReader(result).Object(L"anchor"));
  }
};

TEST_F(ImageUndoTest, TheVeryPictureComesBackAndCanBeReplacedAgain) {
  const auto photo = AddPicture(L"Photo", 120, 80, 2);
  photo->left = 40;
  const std::wstring anchor = Replaced(AnchorOf(L"Photo"), *Pattern(240, 160, 9));
  const TraceTail trace;
  const std::wstring result = Undo(anchor);
  const JsonReader reader(result);
  EXPECT_EQ(reader.Object(L"anchor"), anchor);
  EXPECT_EQ(*PictureOfText(reader.Text(L"imageBase64")), *Pattern(120, 80, 2));
  EXPECT_TRUE(result.ends_with(LR"(","batchMode":false})"));
  EXPECT_EQ(Shown(L"Photo"), *Pattern(120, 80, 2));
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate undo shape=Photo sheet=Sheet1\r\n"));
  EXPECT_EQ(Undo(anchor), Error(L"nothing_to_undo"));
  EXPECT_EQ(Undo(Replaced(anchor, *Pattern(30, 30, 1))).find(L"error"), std::wstring::npos);
}

TEST_F(ImageUndoTest, TwoReplacementsAreTakenBackOneByOne) {
  AddPicture(L"Photo", 120, 80, 2);
  std::wstring anchor = AnchorOf(L"Photo");
  for (const int seed : {3, 4})
    anchor = Replaced(anchor, *Pattern(120, 80, seed));
  for (const int seed : {3, 2}) {
    EXPECT_EQ(Undo(anchor).find(L"error"), std::wstring::npos);
    EXPECT_EQ(Shown(L"Photo"), *Pattern(120, 80, seed));
  }
}

TEST_F(ImageUndoTest, AnUndoThatFailsCanBeTriedAgain) {
  const auto box = engine.AddShape(L"Sheet1", L"Box", kAutoShape);
  box->width = box->height = 30;
  box->picture = Pattern(40, 40, 1);
  AddPicture(L"Photo", 120, 80, 2);
  const std::wstring boxAnchor = Replaced(AnchorOf(L"Box"), *Pattern(40, 40, 5));
  const std::wstring anchor = Replaced(AnchorOf(L"Photo"), *Pattern(120, 80, 3));
  engine.ActivateSheet(L"Data");
  EXPECT_EQ(Undo(anchor), Error(L"sheet_changed"));
  engine.ActivateSheet(L"Sheet1");
  engine.Sheet(L"Sheet1").isProtected = true;
  EXPECT_EQ(Undo(anchor), Error(L"replace_failed"));
  engine.Sheet(L"Sheet1").isProtected = false;
  ShapeOf(L"Photo")->top += 5;
  EXPECT_EQ(Undo(anchor), Error(L"anchor_stale"));
  ShapeOf(L"Photo")->top -= 5;
  EXPECT_EQ(Undo(anchor).find(L"error"), std::wstring::npos);
  EXPECT_EQ(Undo(boxAnchor).find(L"error"), std::wstring::npos);
  EXPECT_EQ(*box->picture, *Pattern(40, 40, 1));
}

TEST_F(ImageUndoTest, PicturesOfAnotherWorkbookAreLeftAlone) {
  AddPicture(L"Photo", 120, 80, 2);
  const std::wstring anchor = Replaced(AnchorOf(L"Photo"), *Pattern(120, 80, 3));
  engine.AddWorkbook(L"Copy.xlsx", L"C:\\Books", {L"Sheet1"});
  Pin();
  AddPicture(L"Photo", 120, 80, 4);
  EXPECT_EQ(Undo(anchor), Error(L"nothing_to_undo"));
  EXPECT_EQ(Shown(L"Photo"), *Pattern(120, 80, 4));
}

TEST_F(ImageUndoTest, ABatchIsTakenBackNewestFirst) {
  for (int number = 1; number <= 3; ++number) {
    AddPicture(Concat(L"P", number), 20, 20, number);
    static_cast<void>(Replaced(AnchorOf(Concat(L"P", number)), *Pattern(20, 20, 10 + number), true));
  }
  static_cast<void>(Replaced(AnchorOf(L"P1"), *Pattern(20, 20, 30), true));
  const TraceTail trace;
  // From another sheet, too.
  engine.ActivateSheet(L"Data");
  EXPECT_EQ(BatchUndo(), LR"({"ok":true,"restored":4,"failed":0,"failedReasons":[]})");
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate batch undo restored=4 failed=0\r\n"));
  for (int number = 1; number <= 3; ++number)
    EXPECT_EQ(Shown(Concat(L"P", number)), *Pattern(20, 20, number));
  EXPECT_EQ(BatchUndo(), LR"({"ok":true,"restored":0,"failed":0,"failedReasons":[]})");
}

TEST_F(ImageUndoTest, ABatchThatIsClearedBetweenTwoPicturesStopsThere) {
  static_cast<void>(ReplacedBatch());
  const auto replies = BatchUndoAnd(L"imageTranslateClearBatchUndo");
  ASSERT_EQ(replies.size(), 2U);
  EXPECT_EQ(replies[0], BuildReplyScript(L"r2", true, LR"({"ok":true})"));
  EXPECT_EQ(replies[1],
            BuildReplyScript(L"r1", true, LR"({"ok":true,"restored":1,"failed":0,"failedReasons":[]})"));
  EXPECT_EQ(Shown(L"P1"), *Pattern(20, 20, 1));
  EXPECT_EQ(Shown(L"P3"), *Pattern(20, 20, 13));
}

TEST_F(ImageUndoTest, APictureOfABatchCanBeTakenBackWhileTheBatchIs) {
  static_cast<void>(ReplacedBatch());
  const auto replies = BatchUndoAnd(L"imageTranslateUndoReplace", L",\"anchor\":" + AnchorOf(L"P3"));
  ASSERT_EQ(replies.size(), 2U);
  EXPECT_EQ(replies[0].find(L"error"), std::wstring::npos);
  EXPECT_EQ(replies[1],
            BuildReplyScript(L"r1", true, LR"({"ok":true,"restored":2,"failed":0,"failedReasons":[]})"));
  for (int number = 1; number <= 3; ++number)
    EXPECT_EQ(Shown(Concat(L"P", number)), *Pattern(20, 20, number));
}

TEST_F(ImageUndoTest, ABatchThatBreaksOffKeepsWhatItDidNotRestore) {
  static_cast<void>(ReplacedBatch());
  {
    const ImportFault clock("kernel32.dll", "GetTickCount64", FailingClock);
    // On the way through the stack, in the log of that, and behind the first picture.
    engine.Faults().OnCall("Shape.Delete", [] { clockFailures = 3; });
    EXPECT_EQ(BatchUndo(), Error(L"image_translate_failed"));
    EXPECT_EQ(std::exchange(clockFailures, 0), 0);
    engine.Faults().Clear();
  }
  EXPECT_EQ(BatchUndo(), LR"({"ok":true,"restored":2,"failed":0,"failedReasons":[]})");
  for (int number = 1; number <= 3; ++number)
    EXPECT_EQ(Shown(Concat(L"P", number)), *Pattern(20, 20, number));
}

TEST_F(ImageUndoTest, WhatFailsOnceTheOldPictureIsGoneCostsNoSnapshot) {
  AddPicture(L"Photo", 120, 80, 2);
  std::wstring anchor = AnchorOf(L"Photo");
  {
    const ImportFault clock("kernel32.dll", "GetTickCount64", FailingClock);
    engine.Faults().OnCall("Shape.Delete", [] { clockFailures = 1; });
    anchor = Replaced(anchor, *Pattern(120, 80, 3));
    EXPECT_EQ(std::exchange(clockFailures, 0), 0);
    engine.Faults().Clear();
  }
  EXPECT_EQ(Undo(anchor).find(L"error"), std::wstring::npos);
  EXPECT_EQ(Shown(L"Photo"), *Pattern(120, 80, 2));
}

TEST_F(ImageUndoTest, ABusyHostOrAnUnknownWorkbookIsNotTakenForNothingToUndo) {
  AddPicture(L"Photo", 120, 80, 2);
  const std::wstring anchor = Replaced(AnchorOf(L"Photo"), *Pattern(120, 80, 3));
  for (const char* member : {"Worksheet.Shapes", "Worksheet.Parent", "Workbook.FullName"}) {
    MakeBusy(member);
    EXPECT_EQ(Undo(anchor), Error(L"image_translate_failed")) << member;
    EXPECT_EQ(Replace(anchor, *Pattern(5, 5)), Error(L"image_translate_failed")) << member;
    engine.Faults().Clear();
  }
  for (const char* member : {"Workbook.FullName", "Workbook.Name"})
    engine.Faults().Fail({.member = member});
  EXPECT_EQ(Undo(anchor), Error(L"image_translate_failed"));
  EXPECT_TRUE(
      Replace(anchor, *Pattern(120, 80, 4)).starts_with(LR"({"ok":true,"replaced":true,"hasUndo":false)"));
  engine.Faults().Clear();
  EXPECT_EQ(Undo(anchor).find(L"error"), std::wstring::npos);
  EXPECT_EQ(Shown(L"Photo"), *Pattern(120, 80, 2));
}

TEST_F(ImageUndoTest, WhatABatchCannotRestoreIsSaidAndKept) {
  for (int number = 1; number <= 4; ++number)
    AddPicture(Concat(L"P", number), 20, 20, number);
  for (int number = 1; number <= 3; ++number)
    static_cast<void>(Replaced(AnchorOf(Concat(L"P", number)), *Pattern(20, 20, 10 + number), true));
  const std::wstring fourth = AnchorOf(L"P4");
  engine.Faults().Hide("Shape.CopyPicture");
  engine.Faults().Hide("Shape.Copy");
  EXPECT_TRUE(Replace(fourth, *Pattern(20, 20, 14), true)
                  .starts_with(LR"({"ok":true,"replaced":true,"hasUndo":false)"));
  engine.Faults().Clear();
  ShapeOf(L"P2")->left += 3;
  engine.Faults().Fail({.member = "Shapes.AddPicture", .times = 1});
  const TraceTail trace;
  EXPECT_EQ(BatchUndo(),
            LR"({"ok":true,"restored":1,"failed":3,"failedReasons":["missing_undo_snapshot",)"
            LR"("restore_failed","anchor_stale"]})");
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate batch undo failed anchor={\"v\":1,"));
  EXPECT_TRUE(trace.Has(L" err=anchor_stale\r\n"));
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate batch undo restored=1 failed=3\r\n"));
  engine.Faults().Clear();
  ShapeOf(L"P2")->left -= 3;
  EXPECT_EQ(BatchUndo(), LR"({"ok":true,"restored":2,"failed":0,"failedReasons":[]})");
  EXPECT_EQ(Shown(L"P3"), *Pattern(20, 20, 3));
  EXPECT_EQ(Shown(L"P2"), *Pattern(20, 20, 2));
}

TEST_F(ImageUndoTest, AClearedBatchIsOver) {
  AddPicture(L"Photo", 20, 20, 1);
  const std::wstring anchor = Replaced(AnchorOf(L"Photo"), *Pattern(20, 20, 2), true);
  EXPECT_EQ(Ask(L"imageTranslateClearBatchUndo"), LR"({"ok":true})");
  EXPECT_EQ(BatchUndo(), LR"({"ok":true,"restored":0,"failed":0,"failedReasons":[]})");
  EXPECT_EQ(Undo(anchor), Error(L"nothing_to_undo"));
}

}  // namespace
}  // namespace qv::test
