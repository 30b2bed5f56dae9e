#include <string>

#include "addin/tools/image_fixture.h"
#include "foundation/json_reader.h"
#include "foundation/text.h"

namespace qv::test {
namespace {

constexpr long kAutoShape = 1;
constexpr long kGroup = 6;

class ImageReplaceTest : public ImageTest {};

TEST_F(ImageReplaceTest, WhatIsExtractedIsThePicture) {
  AddPicture(L"Photo", 120, 80, 7);
  const std::wstring result = Extract(AnchorOf(L"Photo"));
  EXPECT_TRUE(
      result.starts_with(LR"({"ok":true,"mediaType":"image/png","width":120,"height":80,"data":"iVBOR)"))
      << ToUtf8(result.substr(0, 120));
  EXPECT_EQ(*PictureOfText(JsonReader(result).Text(L"data")), *Pattern(120, 80, 7));
}

TEST_F(ImageReplaceTest, APictureIsExchangedAndKeepsItsPlace) {
  AddPicture(L"Below", 10, 10, 1);
  const auto photo = AddPicture(L"Photo", 120, 80, 2);
  AddPicture(L"Above", 10, 10, 3);
  photo->left = 33.5;
  photo->top = 12.25;
  photo->alternativeText = L"What is seen";
  photo->placement = 3;
  photo->lockAspectRatio = true;
  photo->title = L"A title";
  photo->onAction = L"Book.xlsx!Macro";
  photo->rotation = 30;
  photo->locked = false;
  photo->visible = false;
  const std::wstring anchor = AnchorOf(L"Photo");
  const std::wstring result = Replace(anchor, *Pattern(240, 160, 9));
  EXPECT_EQ(
      result,
      LR"({"ok":true,"replaced":true,"hasUndo":true,"anchor":{"v":1,"host":"excel","kind":"excel_shape",)"
      LR"("sheetName":"Sheet1","shapeName":"Photo","shapeIndex":2,"childPath":[],"widthPt":90,)"
      LR"("heightPt":60,"leftPt":33.5,"topPt":12.25}})");
  EXPECT_TRUE(photo->deleted);
  EXPECT_EQ(engine.Sheet(L"Sheet1").shapes.size(), 3U);
  EXPECT_EQ(Shown(L"Photo"), *Pattern(240, 160, 9));
  const auto now = ShapeOf(L"Photo");
  EXPECT_EQ(now->alternativeText, L"What is seen");
  EXPECT_EQ(now->placement, 3);
  EXPECT_TRUE(now->lockAspectRatio);
  EXPECT_EQ(now->title, L"A title");
  EXPECT_EQ(now->onAction, L"Book.xlsx!Macro");
  EXPECT_EQ(now->rotation, 30);
  EXPECT_FALSE(now->locked);
  EXPECT_FALSE(now->visible);
}

TEST_F(ImageReplaceTest, ATurnedPictureIsExportedUprightAndTurnedBack) {
  const auto photo = AddPicture(L"Photo", 120, 80, 2);
  photo->rotation = 30;
  const std::wstring anchor = AnchorOf(L"Photo");
  std::vector<double> turns;
  engine.Faults().OnCall("Shape.CopyPicture", [&] {
    turns.push_back(photo->rotation);
    engine.Sheet(L"Sheet1").workbook.lock()->saved = false;
  });
  for (const bool wasSaved : {true, false}) {
    engine.Sheet(L"Sheet1").workbook.lock()->saved = wasSaved;
    EXPECT_TRUE(Extract(anchor).starts_with(LR"({"ok":true)"));
    EXPECT_EQ(photo->rotation, 30);
    EXPECT_EQ(engine.Sheet(L"Sheet1").workbook.lock()->saved, wasSaved);
  }
  EXPECT_TRUE(Replace(anchor, *Pattern(60, 40, 9)).starts_with(LR"({"ok":true)"));
  EXPECT_EQ(turns, (std::vector<double>{0, 0, 0}));
  EXPECT_EQ(ShapeOf(L"Photo")->rotation, 30);
}

TEST_F(ImageReplaceTest, AStackThatDoesNotChangeEndsTheWayDown) {
  AddPicture(L"Photo", 120, 80, 2);
  AddPicture(L"Above", 10, 10, 3);
  AddPicture(L"Top", 10, 10, 3);
  const std::wstring anchor = AnchorOf(L"Photo");
  // Whatever is asked for, the new one goes back to the top.
  engine.Faults().OnCall(
      "Shape.ZOrder", [this] { ShapeOf(L"Photo")->depth = 100; }, false);
  EXPECT_TRUE(Replace(anchor, *Pattern(5, 5, 9)).starts_with(LR"({"ok":true)"));
  EXPECT_EQ(engine.Calls("Shape.ZOrder"), 1U);
}

TEST_F(ImageReplaceTest, APictureFormatThatTakesImagesKeepsTheShape) {
  const auto photo = AddPicture(L"Photo", 120, 80, 2);
  engine.Host().pictureFormatTakesImage = true;
  const std::wstring result = Replace(AnchorOf(L"Photo"), *Pattern(60, 40, 9));
  EXPECT_TRUE(result.starts_with(LR"({"ok":true,"replaced":true,"hasUndo":true)"));
  EXPECT_FALSE(photo->deleted);
  EXPECT_EQ(*photo->picture, *Pattern(60, 40, 9));
}

TEST_F(ImageReplaceTest, AFilledShapeIsFilledAnew) {
  const auto box = engine.AddShape(L"Sheet1", L"Box", kAutoShape);
  box->picture = Pattern(30, 30, 1);
  EXPECT_TRUE(Replace(AnchorOf(L"Box"), *Pattern(50, 50, 2)).starts_with(LR"({"ok":true,"replaced":true)"));
  EXPECT_FALSE(box->deleted);
  EXPECT_EQ(*box->picture, *Pattern(50, 50, 2));
}

TEST_F(ImageReplaceTest, APictureInAGroupIsNeverTakenOutOfIt) {
  const auto child = AddPicture(L"Child", 40, 30, 3);
  const auto box = engine.AddShape(L"Sheet1", L"Box", kAutoShape);
  box->picture = Pattern(30, 30, 1);
  const auto group = engine.AddShape(L"Sheet1", L"Group", kGroup);
  devhost::MemoryEngine::PutIntoGroup(engine.Sheet(L"Sheet1"), *group, {child, box});
  const TraceTail trace;
  EXPECT_EQ(Replace(AnchorOf(L"Child"), *Pattern(5, 5, 1)),
            LR"({"error":"replace_failed","detail":"group_child_inplace_only"})");
  EXPECT_TRUE(
      trace.Has(L"ExcelImageTranslate in-place replace failed for grouped shape shape=Child; refusing "
                L"AddPicture fallback\r\n"));
  EXPECT_EQ(*child->picture, *Pattern(40, 30, 3));
  EXPECT_EQ(engine.Calls("Shape.Delete"), 0U);
  EXPECT_EQ(engine.Calls("Shapes.AddPicture"), 0U);
  // What can be done in the shape is done in a group, too.
  EXPECT_TRUE(Replace(AnchorOf(L"Box"), *Pattern(50, 50, 2)).starts_with(LR"({"ok":true)"));
  EXPECT_EQ(*box->picture, *Pattern(50, 50, 2));
}

TEST_F(ImageReplaceTest, AChartBecomesAPicture) {
  engine.AddChart(L"Sheet1", L"Sales");
  const std::wstring result = Replace(AnchorOf(L"Chart 1"), *Pattern(50, 50, 2));
  EXPECT_TRUE(result.starts_with(LR"({"ok":true,"replaced":true,"hasUndo":true)"));
  EXPECT_TRUE(engine.Sheet(L"Sheet1").charts.empty());
  EXPECT_EQ(Shown(L"Chart 1"), *Pattern(50, 50, 2));
}

TEST_F(ImageReplaceTest, APictureThatWasChangedIsStale) {
  const auto photo = AddPicture(L"Photo", 120, 80, 2);
  const std::wstring anchor = AnchorOf(L"Photo");
  const TraceTail trace;
  photo->left += 1;
  for (const auto& result : {Extract(anchor), Replace(anchor, *Pattern(5, 5))})
    EXPECT_EQ(result, Error(L"anchor_stale"));
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate extract anchor mismatch want={\"v\":1,"));
  EXPECT_TRUE(trace.Has(L"\"leftPt\":1,\"topPt\":0}\r\n"));
  photo->left -= 1;
  EXPECT_TRUE(Extract(anchor).starts_with(LR"({"ok":true)"));
  photo->name = L"Other";
  EXPECT_EQ(Extract(anchor), Error(L"anchor_stale"));
  engine.Sheet(L"Sheet1").shapes.clear();
  EXPECT_EQ(Extract(anchor), Error(L"anchor_stale"));
  EXPECT_TRUE(trace.Has(L" got=none\r\n"));
}

TEST_F(ImageReplaceTest, APictureIsFoundWhateverLiesBelowItNow) {
  AddPicture(L"Below", 10, 10, 1);
  AddPicture(L"Photo", 120, 80, 2);
  const std::wstring anchor = AnchorOf(L"Photo");
  engine.Sheet(L"Sheet1").shapes.erase(engine.Sheet(L"Sheet1").shapes.begin());
  const std::wstring result = Replace(anchor, *Pattern(5, 5, 4));
  EXPECT_NE(result.find(LR"("shapeIndex":1)"), std::wstring::npos) << ToUtf8(result);
}

TEST_F(ImageReplaceTest, OfTwoPicturesOfOneNameThePlaceDecides) {
  AddPicture(L"Twin", 20, 20, 1);
  const auto second = AddPicture(L"Twin", 20, 20, 2);
  second->left = 100;
  const std::vector<std::wstring> anchors = Anchors();
  EXPECT_EQ(*PictureOfText(JsonReader(Extract(anchors[1])).Text(L"data")), *Pattern(20, 20, 2));
  EXPECT_EQ(*PictureOfText(JsonReader(Extract(anchors[0])).Text(L"data")), *Pattern(20, 20, 1));
}

TEST_F(ImageReplaceTest, OnlyTheActiveSheetIsWorkedOn) {
  AddPicture(L"Photo", 120, 80, 2);
  const std::wstring anchor = AnchorOf(L"Photo");
  engine.ActivateSheet(L"Data");
  const TraceTail trace;
  EXPECT_EQ(Extract(anchor), Error(L"sheet_changed"));
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate extract active sheet changed want=Sheet1 active=Data\r\n"));
  EXPECT_EQ(Replace(anchor, *Pattern(5, 5)), Error(L"sheet_changed"));
  // What the page names the sheet makes no line of its own.
  EXPECT_EQ(Extract(ReplaceAll(anchor, L"Sheet1", LR"(A\r\nB)")), Error(L"sheet_changed"));
  EXPECT_TRUE(trace.Has(LR"(active sheet changed want=A\r\nB active=Data)"));
  EXPECT_EQ(Shown(L"Photo"), *Pattern(120, 80, 2));
}

TEST_F(ImageReplaceTest, BadArgumentsHaveTheirOwnCodes) {
  AddPicture(L"Photo", 120, 80, 2);
  const std::wstring anchor = AnchorOf(L"Photo");
  const std::wstring png = PngText(*Pattern(5, 5));
  const auto replace = [&](const std::wstring& anchorText, const std::wstring& image) {
    return Ask(L"imageTranslateReplace",
               Concat(L",\"anchor\":", anchorText, L",\"imageBase64\":\"", image, L'"'));
  };
  EXPECT_EQ(Ask(L"imageTranslateExtract"), Error(L"anchor_required"));
  EXPECT_EQ(Ask(L"imageTranslateUndoReplace"), Error(L"anchor_required"));
  EXPECT_EQ(Extract(LR"({"host":"word","kind":"excel_shape"})"), Error(L"invalid_request"));
  EXPECT_EQ(Extract(L"7"), Error(L"invalid_request"));
  EXPECT_EQ(Undo(L"[]"), Error(L"invalid_request"));
  EXPECT_EQ(Ask(L"imageTranslateReplace", Concat(L",\"anchor\":", anchor)), Error(L"invalid_request"));
  EXPECT_EQ(Ask(L"imageTranslateReplace", Concat(L",\"imageBase64\":\"", png, L'"')),
            Error(L"invalid_request"));
  EXPECT_EQ(replace(anchor, L""), Error(L"invalid_request"));
  for (const wchar_t* image : {L"123456", L"true", L"{}", L"[1]"}) {
    EXPECT_EQ(Ask(L"imageTranslateReplace", Concat(L",\"anchor\":", anchor, L",\"imageBase64\":", image)),
              Error(L"invalid_request"));
  }
  EXPECT_EQ(replace(anchor, L"!!!"), Error(L"decode_failed"));
  EXPECT_EQ(replace(anchor, L"AAAA"), Error(L"decode_failed"));
  EXPECT_EQ(replace(anchor, png.substr(0, png.size() / 8 * 4)), Error(L"decode_failed"));
  EXPECT_EQ(Shown(L"Photo"), *Pattern(120, 80, 2));
  EXPECT_TRUE(replace(anchor, L"data:image/png;base64," + png).starts_with(LR"({"ok":true)"));
}

TEST_F(ImageReplaceTest, ANewShapeThatCannotBeFoundLeavesTheOldOne) {
  const auto photo = AddPicture(L"Photo", 120, 80, 2);
  const std::wstring anchor = AnchorOf(L"Photo");
  engine.Sheet(L"Sheet1").isProtected = true;
  EXPECT_EQ(Replace(anchor, *Pattern(5, 5)), Error(L"replace_failed"));
  engine.Sheet(L"Sheet1").isProtected = false;
  engine.Faults().Fail({.member = "Shape.Delete", .times = 1});
  EXPECT_EQ(Replace(anchor, *Pattern(5, 5)), Error(L"replace_failed"));
  EXPECT_FALSE(photo->deleted);
  EXPECT_EQ(engine.Sheet(L"Sheet1").shapes.size(), 1U);
}

}  // namespace
}  // namespace qv::test
