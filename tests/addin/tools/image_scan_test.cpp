#include <optional>
#include <string>

#include "addin/tools/image_fixture.h"
#include "foundation/json_reader.h"
#include "foundation/text.h"
#include "tools/clipboard_backup.h"

namespace qv::test {
namespace {

constexpr long kLine = 9;
constexpr long kFormControl = 8;
constexpr long kAutoShape = 1;
constexpr long kGroup = 6;

class ImageScanTest : public ImageTest {
 protected:
  /// A picture, a line, a chart, a group with a plain shape, a picture and a group in it, a filled shape, and
  /// a form control.
  void FillSheet() {
    AddPicture(L"Photo", 100, 50, 1);
    engine.AddShape(L"Sheet1", L"Line 1", kLine);
    engine.AddChart(L"Sheet1", L"Sales");
    const auto inner = engine.AddShape(L"Sheet1", L"Inner", kGroup);
    const auto deep = AddPicture(L"Deep", 20, 10, 2);
    const auto child = AddPicture(L"Child", 40, 30, 3);
    const auto plain = engine.AddShape(L"Sheet1", L"Box", kAutoShape);
    const auto group = engine.AddShape(L"Sheet1", L"Group 1", kGroup);
    auto& sheet = engine.Sheet(L"Sheet1");
    devhost::MemoryEngine::PutIntoGroup(sheet, *inner, {deep});
    devhost::MemoryEngine::PutIntoGroup(sheet, *group, {plain, child, inner});
    const auto filled = engine.AddShape(L"Sheet1", L"Filled", kAutoShape);
    filled->picture = Pattern(30, 30, 4);
    engine.AddShape(L"Sheet1", L"Button 1", kFormControl);
  }
};

TEST_F(ImageScanTest, EveryPictureIsCountedWhereverItLies) {
  FillSheet();
  const TraceTail trace;
  EXPECT_EQ(Ask(L"imageTranslateCount"),
            LR"({"ok":true,"count":5,"skippedUnsupported":3,"sheetSummary":[{"sheetName":"Sheet1","count":5,)"
            LR"("anchors":[]}]})");
  EXPECT_EQ(Ask(L"imageTranslateScan", L",\"countOnly\":true"), Ask(L"imageTranslateCount"));
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate scan active processable=5 unsupportedSkip=3\r\n"));
  EXPECT_TRUE(trace.Has(L"HandleImageTranslateMessage action=imageTranslateCount requestId=r1\r\n"));
  EXPECT_EQ(engine.Calls("Shape.CopyPicture"), 0U);
}

TEST_F(ImageScanTest, AChartIsKnownByWhateverTheHostHasForIt) {
  engine.AddChart(L"Sheet1", L"Sales");
  const auto counts = [this](const wchar_t* members) {
    return Ask(L"imageTranslateCount").find(members) == 11;
  };
  EXPECT_TRUE(counts(LR"("count":1,"skippedUnsupported":0)"));
  engine.Faults().Hide("Shape.HasChart");
  EXPECT_TRUE(counts(LR"("count":1,"skippedUnsupported":0)"));
  engine.Faults().Hide("Shape.Chart");
  EXPECT_TRUE(counts(LR"("count":0,"skippedUnsupported":1)"));
}

TEST_F(ImageScanTest, AnchorsSayWhereEachPictureLies) {
  FillSheet();
  std::vector<std::wstring> places;
  for (const std::wstring& anchor : Anchors()) {
    const JsonReader reader(anchor);
    places.push_back(Concat(reader.Text(L"shapeName"), L' ', reader.Value(L"shapeIndex"), L' ',
                            reader.Value(L"childPath")));
  }
  EXPECT_EQ(places, (std::vector<std::wstring>{L"Photo 1 []", L"Chart 1 3 []", L"Child 4 [2]",
                                               L"Deep 4 [3,1]", L"Filled 5 []"}));
  EXPECT_TRUE(Anchors().front().starts_with(
      LR"({"v":1,"host":"excel","kind":"excel_shape","sheetName":"Sheet1","shapeName":"Photo","shapeIndex":1,)"
      LR"("childPath":[],"widthPt":75,"heightPt":37.5,"leftPt":0,"topPt":0,"thumbBase64":"iVBOR)"))
      << ToUtf8(Anchors().front().substr(0, 250));
}

TEST_F(ImageScanTest, ThumbnailsAreNeverLargerThanTheirSquare) {
  const struct {
    int width, height, thumbWidth, thumbHeight;
  } cases[] = {{1600, 900, 160, 90}, {100, 50, 100, 50},   {160, 160, 160, 160},
               {161, 10, 160, 10},   {300, 3000, 16, 160}, {2000, 2, 160, 1}};
  for (const auto& size : cases) {
    engine.Sheet(L"Sheet1").shapes.clear();
    const auto shape = AddPicture(L"P", size.width, size.height);
    const std::wstring anchor = Anchors().front();
    const JsonReader reader(anchor);
    EXPECT_EQ(reader.Integer(L"width"), size.thumbWidth);
    EXPECT_EQ(reader.Integer(L"height"), size.thumbHeight);
    const auto thumbnail = PictureOfText(reader.Text(L"thumbBase64"));
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->width, size.thumbWidth);
    EXPECT_EQ(thumbnail->height, size.thumbHeight);
    if (size.thumbWidth == size.width) {
      EXPECT_EQ(*thumbnail, *shape->picture);
    }
  }
}

TEST_F(ImageScanTest, AThumbnailShowsThePicture) {
  // Four fields of one colour each.
  auto picture = std::make_shared<PictureData>(*Pattern(640, 320));
  const std::uint32_t colors[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFFFF};
  for (size_t at = 0; at < picture->pixels.size(); ++at)
    picture->pixels[at] = colors[(at % 640 < 320 ? 0 : 1) + (at < picture->pixels.size() / 2 ? 0 : 2)];
  engine.AddPicture(L"Sheet1", L"Fields", picture);
  const auto thumbnail = PictureOfText(JsonReader(Anchors().front()).Text(L"thumbBase64"));
  ASSERT_NE(thumbnail, nullptr);
  for (size_t field = 0; field < 4; ++field) {
    const size_t at = (field < 2 ? 20U : 60U) * 160 + (field % 2 == 0 ? 40U : 120U);
    EXPECT_EQ(thumbnail->pixels[at], colors[field]) << field;
  }
}

TEST_F(ImageScanTest, APictureThatCannotBeCopiedHasAnAnchorWithoutAThumbnail) {
  AddPicture(L"One", 10, 10);
  AddPicture(L"Two", 10, 10);
  engine.Faults().Fail({.member = "Shape.CopyPicture", .times = 1});
  const TraceTail trace;
  const std::vector<std::wstring> anchors = Anchors();
  ASSERT_EQ(anchors.size(), 2U);
  EXPECT_TRUE(anchors[0].ends_with(LR"("topPt":0})"));
  EXPECT_NE(anchors[1].find(L"thumbBase64"), std::wstring::npos);
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate probe export failed: copy_picture\r\n"));
}

TEST_F(ImageScanTest, WhatCannotBeScannedIsSaid) {
  AddPicture(L"One", 10, 10);
  const TraceTail trace;
  engine.Faults().Hide("Worksheet.Shapes");
  EXPECT_EQ(Scan(),
            LR"({"ok":true,"count":0,"skippedUnsupported":0,"sheetSummary":[{"sheetName":"Sheet1",)"
            LR"("count":0,"anchors":[]}]})");
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate scan sheet=Sheet1 shapes=0 (no collection)\r\n"));
  engine.Faults().Clear();
  engine.Faults().Fail({.member = "Worksheet.Name"});
  EXPECT_EQ(Scan(), Error(L"no_sheet"));
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate scan: active sheet name failed\r\n"));
  engine.Faults().Clear();
  engine.Faults().Fail({.member = "Window.ActiveSheet"});
  EXPECT_EQ(Scan(), Error(L"no_sheet"));
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate scan: no active sheet\r\n"));
}

TEST_F(ImageScanTest, ABusyHostIsNoSheetWithoutPictures) {
  AddPicture(L"One", 10, 10);
  engine.AddShape(L"Sheet1", L"Box", kAutoShape);
  engine.AddChart(L"Sheet1", L"Sales");
  const auto child = AddPicture(L"Child", 10, 10);
  const auto group = engine.AddShape(L"Sheet1", L"Group", kGroup);
  devhost::MemoryEngine::PutIntoGroup(engine.Sheet(L"Sheet1"), *group, {child});
  for (const char* member : {"Window.ActiveSheet", "Worksheet.Shapes", "Shapes.Count", "Shapes.Item",
                             "Shape.Type", "Shape.HasChart", "Shape.Fill", "FillFormat.Type",
                             "Shape.GroupItems", "GroupShapes.Item", "Shape.Name", "Shape.Width"}) {
    MakeBusy(member);
    EXPECT_EQ(Scan(), Error(L"image_translate_failed")) << member;
    engine.Faults().Clear();
  }
}

TEST_F(ImageScanTest, AShapeWithoutAPlaceIsNoPicture) {
  AddPicture(L"One", 10, 10);
  engine.Faults().Fail({.member = "Shape.Top"});
  EXPECT_TRUE(Ask(L"imageTranslateCount").find(LR"("count":0,"skippedUnsupported":1)") == 11);
}

TEST_F(ImageScanTest, AScanWaitsForTheClipboardAndGivesItUpInTheEnd) {
  AddPicture(L"One", 10, 10);
  AddPicture(L"Two", 10, 10);
  const ClipboardOwner other;
  // Held for the first slice only.
  std::optional<OpenedClipboard> held(std::in_place, other.Get(), kClipboardPatience);
  ASSERT_TRUE(static_cast<bool>(*held));
  ASSERT_TRUE(pane->Tasks().PostFunction(
      [&] { static_cast<void>(pane->Tasks().PostFunction([&] { held.reset(); })); }));
  EXPECT_NE(Scan().find(L"thumbBase64"), std::wstring::npos);
  held.emplace(other.Get(), kClipboardPatience);
  EXPECT_EQ(Scan().find(L"thumbBase64"), std::wstring::npos);
}

TEST_F(ImageScanTest, AScanOfManyPicturesLetsMessagesThrough) {
  for (int number = 1; number <= 30; ++number)
    AddPicture(Concat(L"P", number), 20, 20, number);
  // As long as the host takes for pictures of some size.
  engine.Faults().Fail({.member = "Shape.CopyPicture", .slowMs = 10});
  int tasks = 0;
  panel.scripts.clear();
  images->HandleImageTranslateMessage(L"imageTranslateScan", LR"({"requestId":"long"})");
  images->HandleImageTranslateMessage(L"imageTranslateCount", LR"({"requestId":"short"})");
  const ULONGLONG start = GetTickCount64();
  while (panel.scripts.size() < 2 && GetTickCount64() - start < 30'000) {
    MSG message;
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) continue;
    if (message.message == kUiTaskMessage) ++tasks;
    DispatchMessageW(&message);
  }
  ASSERT_EQ(panel.scripts.size(), 2U);
  // Two requests, and the slices behind the first one.
  EXPECT_GE(tasks, 5);
  // What is asked meanwhile is answered in between.
  EXPECT_NE(panel.scripts[0].find(L"\"short\""), std::wstring::npos);
  EXPECT_NE(panel.scripts[1].find(L"\"P30\""), std::wstring::npos);
}

TEST_F(ImageScanTest, AScanEndsWithItsPane) {
  for (int number = 1; number <= 10; ++number)
    AddPicture(Concat(L"P", number), 20, 20, number);
  engine.Faults().Fail({.member = "Shape.CopyPicture", .slowMs = 10});
  int copies = 0;
  engine.Faults().OnCall("Shape.CopyPicture", [&] {
    // The host closes the pane inside a call.
    if (++copies == 2) images->Close();
  });
  panel.scripts.clear();
  images->HandleImageTranslateMessage(L"imageTranslateScan", LR"({"requestId":"r"})");
  const ULONGLONG start = GetTickCount64();
  while (copies < 2 && GetTickCount64() - start < 30'000)
    PumpMessages();
  PumpMessages();
  EXPECT_TRUE(panel.scripts.empty());
}

TEST_F(ImageScanTest, OnlyAnUnknownActionIsNotUnderstoodWithAHostOrWithout) {
  EXPECT_EQ(AskForScript(L"imageTranslateDance"),
            BuildReplyScript(L"r1", false, LR"({"error":"unknown_action"})"));
  target.ReleaseReferences();
  EXPECT_EQ(AskForScript(L"imageTranslateScan"), BuildReplyScript(L"r1", true, Error(L"no_sheet")));
  EXPECT_EQ(AskForScript(L"imageTranslateDance"),
            BuildReplyScript(L"r1", false, LR"({"error":"unknown_action"})"));
}

TEST_F(ImageScanTest, TheSelectedPictureIsTold) {
  const auto photo = AddPicture(L"Photo", 320, 200, 1);
  const auto child = AddPicture(L"Child", 40, 30, 2);
  const auto line = engine.AddShape(L"Sheet1", L"Line", kLine);
  const auto group = engine.AddShape(L"Sheet1", L"Group", kGroup);
  devhost::MemoryEngine::PutIntoGroup(engine.Sheet(L"Sheet1"), *group, {child});
  const auto told = [this](std::vector<std::shared_ptr<devhost::memory::FloatingObject>> selection) {
    engine.SelectShapes(L"Sheet1", std::move(selection));
    panel.scripts.clear();
    images->PushSelectionPreview();
    PumpMessages();
    return panel.scripts.empty() ? std::wstring() : panel.scripts.front();
  };
  constexpr const wchar_t* kNone =
      LR"(if(window.onImageSelectionPreview)onImageSelectionPreview({"scope":"empty"}))";
  EXPECT_EQ(told({}), kNone);
  EXPECT_EQ(told({line}), kNone);
  const std::wstring script = told({line, photo});
  EXPECT_TRUE(script.starts_with(
      LR"(if(window.onImageSelectionPreview)onImageSelectionPreview({"scope":"shape","anchor":{"v":1,)"
      LR"("host":"excel","kind":"excel_shape","sheetName":"Sheet1","shapeName":"Photo","shapeIndex":1,)"
      LR"("childPath":[],"widthPt":240,"heightPt":150,"leftPt":0,"topPt":0},"width":320,"height":200,)"
      LR"("thumbBase64":"iVBOR)"))
      << ToUtf8(script.substr(0, 400));
  EXPECT_NE(told({child}).find(LR"("shapeName":"Child","shapeIndex":3,"childPath":[1])"), std::wstring::npos);
  EXPECT_NE(told({group}).find(LR"("shapeName":"Child","shapeIndex":3,"childPath":[1])"), std::wstring::npos);
  // A part of the chart is selected: the host has no range of shapes, but the active chart.
  const auto chart = engine.AddChart(L"Sheet1", L"Sales");
  engine.Faults().Hide("DrawingObject.ShapeRange");
  EXPECT_NE(told({chart}).find(LR"("scope":"shape")"), std::wstring::npos);
  engine.Faults().Clear();
  MakeBusy("Window.Selection");
  EXPECT_EQ(told({photo}), L"");
}

}  // namespace
}  // namespace qv::test
