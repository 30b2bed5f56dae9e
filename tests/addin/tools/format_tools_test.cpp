#include <string>

#include "addin/tools/tools_fixture.h"

namespace qv::test {
namespace {

class FormatTools : public ToolsTest {
 protected:
  [[nodiscard]] Variant OfPart(const std::string& address, const wchar_t* part, const wchar_t* property) {
    Variant value;
    EXPECT_EQ(GetProperty(Look(address, part).Object().Get(), property, value), S_OK);
    return value;
  }
  [[nodiscard]] std::int32_t Border(const std::string& address, long edge, const wchar_t* property) {
    return GetIntProperty(GetCollectionItem(Look(address, L"Borders").Object().Get(), Variant(edge)).Get(),
                          property);
  }
};

constexpr const wchar_t* kApplied = LR"({"ok":true,"applied":1})";

TEST_F(FormatTools, EveryFormatReachesItsProperty) {
  EXPECT_EQ(
      Run(L"excelFormatRange",
          LR"({"range":"B2:C3","font":{"bold":true,"italic":true,"underline":true,"size":14,"name":"Arial",
                "color":"#1F4E79"},"fill":{"color":"00FF00"},"alignment":{"horizontal":"right","vertical":"top"},
                "wrapText":true,"numberFormat":"0.00%"})"),
      kApplied);
  EXPECT_TRUE(OfPart("B2:C3", L"Font", L"Bold").IsTrue());
  EXPECT_TRUE(OfPart("B2:C3", L"Font", L"Italic").IsTrue());
  EXPECT_EQ(IntegerOf(OfPart("B2:C3", L"Font", L"Underline")), 2);
  EXPECT_EQ(IntegerOf(OfPart("B2:C3", L"Font", L"Size")), 14);
  EXPECT_EQ(OfPart("B2:C3", L"Font", L"Name").Text(), L"Arial");
  EXPECT_EQ(IntegerOf(OfPart("B2:C3", L"Font", L"Color")), 0x794E1F);
  EXPECT_EQ(IntegerOf(OfPart("B2:C3", L"Interior", L"Color")), 0x00FF00);
  EXPECT_EQ(Number("B2:C3", L"HorizontalAlignment"), -4152);
  EXPECT_EQ(Number("B2:C3", L"VerticalAlignment"), -4160);
  EXPECT_TRUE(Look("B2:C3", L"WrapText").IsTrue());
  EXPECT_EQ(Look("B2:C3", L"NumberFormat").Text(), L"0.00%");
  EXPECT_FALSE(OfPart("A1", L"Font", L"Bold").IsTrue());
}

TEST_F(FormatTools, BordersGoToTheNamedEdges) {
  EXPECT_EQ(Run(L"excelFormatRange",
                LR"({"range":"B2:C3","border":{"edges":["top","inside_h"],"style":"thick",
                "color":"#FF0000"}})"),
            kApplied);
  EXPECT_EQ(Border("B2:C3", 8, L"LineStyle"), 1);
  EXPECT_EQ(Border("B2:C3", 8, L"Weight"), 4);
  EXPECT_EQ(Border("B2:C3", 12, L"Color"), 255);
  EXPECT_EQ(Border("B2:C3", 7, L"LineStyle"), -4142);
  EXPECT_EQ(Run(L"excelFormatRange", LR"({"range":"B2:C3","border":{"edges":"all","style":"none"}})"),
            kApplied);
  EXPECT_EQ(Border("B2:C3", 8, L"LineStyle"), -4142);
  // A single cell has no inner lines; the others are drawn.
  EXPECT_EQ(Run(L"excelFormatRange", LR"({"range":"F6","border":{"style":"dashed"}})"), kApplied);
  EXPECT_EQ(Border("F6", 10, L"LineStyle"), -4115);
}

TEST_F(FormatTools, ABorderKeepsWhatIsNotNamed) {
  const auto format = [&](const wchar_t* border) {
    EXPECT_EQ(Run(L"excelFormatRange", L"{\"range\":\"B2\",\"border\":" + std::wstring(border) + L"}"),
              kApplied);
  };
  format(LR"({"edges":"top","style":"thick"})");
  format(L"{}");
  format(LR"({"edges":"top","color":"#FF0000"})");
  EXPECT_EQ(Border("B2", 8, L"Weight"), 4);
  EXPECT_EQ(Border("B2", 8, L"Color"), 255);
  EXPECT_EQ(Border("B2", 7, L"LineStyle"), -4142);
  engine.ResetCounters();
  format(LR"({"style":"none","color":"#00FF00"})");
  EXPECT_EQ(engine.Calls("Border.Color"), 0u);
  EXPECT_EQ(engine.Calls("Range.Font"), 0u);
}

TEST_F(FormatTools, ABusyHostIsToldAsSuch) {
  MakeBusy("Worksheet.Range");
  for (const wchar_t* name : {L"excelFormatRange", L"excelMergeCells", L"excelUnmergeCells"})
    EXPECT_EQ(Run(name, LR"({"range":"A1"})"), Error(L"Excel 正忙，请稍后重试"));
  MakeBusy("Worksheet.UsedRange");
  EXPECT_EQ(Run(L"excelSetSize", LR"({"autofit":true})"), Error(L"Excel 正忙，请稍后重试"));
  MakeBusy("Window.Selection");
  EXPECT_EQ(Run(L"excelGetWriteContext"), Error(L"Excel 正忙，请稍后重试"));
}

TEST_F(FormatTools, WholeColumnsAndRowsAreFormattedAsSuch) {
  SetText("D9", L"x");
  EXPECT_EQ(Run(L"excelFormatRange", LR"({"range":"C:D","font":{"bold":true}})"), kApplied);
  EXPECT_TRUE(OfPart("D9", L"Font", L"Bold").IsTrue());
  EXPECT_EQ(Run(L"excelFormatRange", LR"({"range":"9:9","font":{"italic":true}})"), kApplied);
  EXPECT_TRUE(OfPart("D9", L"Font", L"Italic").IsTrue());
  EXPECT_EQ(engine.Calls("Range.EntireColumn"), 1u);
  EXPECT_EQ(engine.Calls("Range.EntireRow"), 1u);
}

TEST_F(FormatTools, OneRefusedPropertyDoesNotKeepTheOthersBack) {
  engine.Faults().Hide("Range.Borders");
  engine.Faults().Fail({.member = "Font.Bold"});
  EXPECT_EQ(Run(L"excelFormatRange",
                LR"({"range":"A1","font":{"bold":true,"italic":true},"wrapText":true,
                "border":{"edges":"all"}})"),
            kApplied);
  EXPECT_TRUE(OfPart("A1", L"Font", L"Italic").IsTrue());
  EXPECT_TRUE(Look("A1", L"WrapText").IsTrue());
  EXPECT_EQ(Run(L"excelFormatRange", LR"({"row":2000000,"col":1})"), Error(L"range 参数缺失或无效"));
}

TEST_F(FormatTools, SizesGoToColumnsAndRows) {
  EXPECT_EQ(Run(L"excelSetSize", LR"({"range":"B2:C4","width":20,"height":33})"),
            LR"({"ok":true,"applied":2})");
  EXPECT_EQ(Number("B1:C1", L"ColumnWidth"), 20);
  EXPECT_EQ(Number("A2:A4", L"RowHeight"), 33);
  EXPECT_NE(Number("A5", L"RowHeight"), 33);
  // The host refuses the second one.
  EXPECT_EQ(Run(L"excelSetSize", LR"({"columns":[{"col":"E","width":12},{"col":"F","width":999}]})"),
            LR"({"ok":true,"applied":1})");
  EXPECT_EQ(Number("E1", L"ColumnWidth"), 12);
  engine.Sheet(L"Sheet1").isProtected = true;
  EXPECT_EQ(Run(L"excelSetSize", LR"({"range":"B:B","width":9})"), LR"({"ok":true,"applied":0})");
}

TEST_F(FormatTools, FittingWithoutATargetIsAboutTheUsedRange) {
  EXPECT_EQ(Run(L"excelSetSize", LR"({"autofit":true})"), Error(L"工作表为空"));
  SetText("B2", L"a text that is wider than its column by far");
  EXPECT_EQ(Run(L"excelSetSize", LR"({"autofit":["columns"]})"), LR"({"ok":true,"applied":1})");
  EXPECT_GT(Number("B2", L"ColumnWidth"), 20);
  EXPECT_EQ(Run(L"excelSetSize", LR"({"autofit":true})"), LR"({"ok":true,"applied":2})");
  EXPECT_EQ(Run(L"excelSetSize", LR"({"columns":["B"],"autofit":true})"), LR"({"ok":true,"applied":1})");
  EXPECT_EQ(Run(L"excelSetSize", LR"({"columns":["$B"],"autofit":true})"), Error(L"range 参数缺失或无效"));
  SetText("Z60000", L"far");
  engine.ResetCounters();
  EXPECT_EQ(Run(L"excelSetSize", LR"({"autofit":true})"), LR"({"ok":true,"applied":2})");
  EXPECT_EQ(engine.Calls("Range.Value2"), 0u) << "the place of a large used range says enough";
  engine.Faults().Hide("Range.AutoFit");
  EXPECT_EQ(Run(L"excelSetSize", LR"({"autofit":true})"), LR"({"ok":true,"applied":0})");
}

}  // namespace
}  // namespace qv::test
