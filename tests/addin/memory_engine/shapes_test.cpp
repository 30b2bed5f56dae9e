#include <filesystem>
#include <fstream>

#include "engines/memory/picture_file.h"
#include "engines/memory/workbook_json.h"
#include "late_bound.h"

namespace qv::devhost {
namespace {

using memory::kGeneralFailure;
using memory::PictureData;

std::shared_ptr<const PictureData> Picture(int width, int height, std::uint32_t color) {
  auto picture = std::make_shared<PictureData>(PictureData{width, height, {}});
  picture->pixels.assign(static_cast<size_t>(width * height), 0xFF000000 | color);
  return picture;
}

class ShapesTest : public MemoryEngineTest {
 protected:
  [[nodiscard]] ComPtr<IDispatch> Shapes() { return Follow(engine.SheetObject(), {L"Shapes"}); }
  [[nodiscard]] ComPtr<IDispatch> ShapeAt(const Variant& index) {
    return CallMethod(Shapes(), L"Item", {index}).value.Object();
  }
  [[nodiscard]] std::wstring NameAt(long index) { return Get(ShapeAt(Variant(index)), L"Name").value.Text(); }
};

TEST_F(ShapesTest, ChartsAndShapesShareOneOrder) {
  engine.AddPicture(L"", L"Low", Picture(2, 2, 1));
  engine.AddChart(L"", L"Sales");
  engine.AddPicture(L"", L"High", Picture(2, 2, 2));
  EXPECT_EQ(Get(Shapes(), L"Count").value->lVal, 3);
  EXPECT_EQ(NameAt(2), L"Chart 1");
  const ComPtr<IDispatch> high = ShapeAt(Variant(L"HIGH"));
  EXPECT_EQ(Get(high, L"ZOrderPosition").value->lVal, 3);
  EXPECT_EQ(CallMethod(high, L"ZOrder", {Variant(3)}).hr, S_OK);
  EXPECT_EQ(NameAt(2), L"High");
  EXPECT_EQ(CallMethod(high, L"ZOrder", {Variant(1)}).hr, S_OK);
  EXPECT_EQ(CallMethod(high, L"ZOrder", {Variant(3)}).hr, S_OK);
  EXPECT_EQ(NameAt(1), L"High");
  EXPECT_EQ(CallMethod(high, L"ZOrder", {Variant(0)}).hr, S_OK);
  EXPECT_EQ(NameAt(3), L"High");
  EXPECT_EQ(CallMethod(high, L"ZOrder", {Variant(9)}).exception, kGeneralFailure);
}

TEST_F(ShapesTest, MembersThatTheHostHasNotAreUnknown) {
  engine.AddPicture(L"", L"P", Picture(2, 2, 1));
  const ComPtr<IDispatch> shape = ShapeAt(Variant(1));
  EXPECT_EQ(CallMethod(shape, L"Export", {Variant(L"C:\\x.png")}).hr, DISP_E_UNKNOWNNAME);
  const ComPtr<IDispatch> format = Get(shape, L"PictureFormat").value.Object();
  EXPECT_EQ(CallMethod(format, L"UserPicture", {Variant(L"C:\\x.png")}).hr, DISP_E_UNKNOWNNAME);
  EXPECT_EQ(Get(shape, L"GroupItems").exception, kGeneralFailure);
  EXPECT_EQ(Get(shape, L"Chart").exception, kGeneralFailure);
}

TEST_F(ShapesTest, AFileBecomesAPictureAndAFillLiesBehindIt) {
  const auto path = std::filesystem::temp_directory_path() / "qv_shapes_test.png";
  {
    std::ofstream file(path, std::ios::binary);
    file << memory::EncodePicture(*Picture(8, 4, 0x123456));
  }
  const std::vector<Variant> call{
      Variant(path.wstring()), Variant(0),   Variant(-1), Variant(1.5), Variant(2.5),
      Variant(-1.0),           Variant(30.0)};
  const Answer added = CallMethod(Shapes(), L"AddPicture", call);
  ASSERT_EQ(added.hr, S_OK);
  const auto shape = engine.Sheet().shapes.back();
  EXPECT_EQ(*shape->picture, *Picture(8, 4, 0x123456));
  EXPECT_EQ(shape->width, 6);
  EXPECT_EQ(shape->height, 30);
  const ComPtr<IDispatch> fill = Get(added.value.Object(), L"Fill").value.Object();
  shape->picture = Picture(1, 1, 1);
  EXPECT_EQ(CallMethod(fill, L"UserPicture", {Variant(path.wstring())}).hr, S_OK);
  EXPECT_EQ(*shape->picture, *Picture(1, 1, 1));
  std::filesystem::remove(path);
  EXPECT_EQ(CallMethod(Shapes(), L"AddPicture", call).exception, kGeneralFailure);
  engine.Sheet().isProtected = true;
  EXPECT_EQ(CallMethod(added.value.Object(), L"Delete").exception, kGeneralFailure);
}

TEST_F(ShapesTest, WhatIsCopiedCanBePastedIntoAChartAndExported) {
  engine.AddPicture(L"", L"P", Picture(16, 8, 0xABCDEF));
  EXPECT_EQ(CallMethod(ShapeAt(Variant(1)), L"Copy").hr, S_OK);
  const ComPtr<IDispatch> charts = CallMethod(engine.SheetObject(), L"ChartObjects").value.Object();
  const Answer frame = CallMethod(charts, L"Add", {Variant(0.0), Variant(0.0), Variant(12.0), Variant(6.0)});
  const ComPtr<IDispatch> chart = Get(frame.value.Object(), L"Chart").value.Object();
  EXPECT_EQ(CallMethod(chart, L"Paste").hr, S_OK);
  const auto path = std::filesystem::temp_directory_path() / "qv_chart_test.png";
  EXPECT_EQ(CallMethod(chart, L"Export", {Variant(path.wstring()), Variant(L"PNG")}).hr, S_OK);
  EXPECT_EQ(*memory::LoadPicture(path.wstring()), *Picture(16, 8, 0xABCDEF));
  std::filesystem::remove(path);
}

TEST_F(ShapesTest, ShapesComeAndGoWithTheDescription) {
  engine.AddPicture(L"", L"P", Picture(4, 2, 7))->alternativeText = L"Seven";
  const auto child = engine.AddPicture(L"", L"Child", Picture(4, 2, 8));
  const auto group = engine.AddShape(L"", L"G", 6);
  MemoryEngine::PutIntoGroup(engine.Sheet(), *group, {child});
  const nlohmann::json saved = memory::WorkbookToJson(*workbook);
  const auto sheets = memory::SheetsFromJson(saved);
  const auto& shapes = sheets.front()->shapes;
  ASSERT_EQ(shapes.size(), 2U);
  EXPECT_EQ(*shapes[0]->picture, *Picture(4, 2, 7));
  EXPECT_EQ(shapes[0]->alternativeText, L"Seven");
  EXPECT_EQ(shapes[1]->children.front()->name, L"Child");
  EXPECT_EQ(*shapes[1]->children.front()->picture, *Picture(4, 2, 8));
  const nlohmann::json bad = {{"sheets", {{{"name", "S"}, {"shapes", {{{"png", "AAAA"}}}}}}}};
  EXPECT_THROW(static_cast<void>(memory::SheetsFromJson(bad)), std::runtime_error);
}

TEST_F(ShapesTest, LinesThatComeInMoveWhatLiesBelowThem) {
  const auto child = engine.AddPicture(L"", L"Child", Picture(4, 2, 8));
  child->top = 100;
  const auto group = engine.AddShape(L"", L"G", 6);
  MemoryEngine::PutIntoGroup(engine.Sheet(), *group, {child});
  engine.InsertRows(L"", 2, 2);
  EXPECT_EQ(group->top, 130);
  EXPECT_EQ(child->top, 130);
}

}  // namespace
}  // namespace qv::devhost
