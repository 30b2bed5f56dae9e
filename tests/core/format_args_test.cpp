#include "tools/format_args.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace qv {
namespace {

RangeFormat Parse(std::wstring_view json) {
  return ParseRangeFormat(ToolArguments(json));
}

std::vector<std::int32_t> EdgesOf(const std::wstring& edges) {
  return Parse(L"{\"border\":{\"style\":\"thin\",\"edges\":" + edges + L"}}").border.edges;
}

TEST(Colors, AreSixHexDigitsWithBlueInTheHighByte) {
  EXPECT_EQ(ParseColor(L"#1F4E79"), 0x794E1F);
  EXPECT_EQ(ParseColor(L"1f4e79"), 0x794E1F);
  EXPECT_EQ(ParseColor(L"FFFFFF"), 0xFFFFFF);
  EXPECT_EQ(ParseColor(L"000000"), 0);
  for (const wchar_t* text : {L"", L"#", L"1F4E7", L"1F4E790", L"##1F4E7", L"##1F4E79", L"1F4E7G", L"#1F4E7 ",
                              L"red", L"0x1F4E", L"-1F4E7"}) {
    EXPECT_FALSE(ParseColor(text)) << ::testing::PrintToString(std::wstring(text));
  }
}

TEST(RangeFormats, ReadEveryMemberInItsOwnObject) {
  const RangeFormat format = Parse(
      LR"({"border":{"color":"#0000FF"},"fill":"#00FF00",
      "font":{"bold":true,"italic":false,"underline":1,"size":12.5,"name":"Arial","color":"#FF0000"},
      "alignment":{"horizontal":"center","vertical":"middle"},"wrapText":true,"numberFormat":"0.00%"})");
  EXPECT_EQ(format.font.bold, true);
  EXPECT_EQ(format.font.italic, false);
  EXPECT_EQ(format.font.underline, true);
  EXPECT_EQ(format.font.size, 12.5);
  EXPECT_EQ(format.font.name, L"Arial");
  EXPECT_EQ(format.font.color, 0x0000FF);
  EXPECT_EQ(format.fill, 0x00FF00);
  EXPECT_EQ(format.border.color, 0xFF0000);
  EXPECT_EQ(format.horizontal, -4108);
  EXPECT_EQ(format.vertical, -4108);
  EXPECT_EQ(format.wrapText, true);
  EXPECT_EQ(format.numberFormat, L"0.00%");
}

TEST(RangeFormats, LeaveAloneWhatIsAbsentOrUnknown) {
  for (const wchar_t* json :
       {L"{}", L"", L"[]",
        LR"({"font":"bold","fill":7,"alignment":"left","wrapText":"yes","numberFormat":5,"border":"all"})",
        LR"({"font":{"bold":"true","size":"12","name":"","color":"red"},"fill":{"colour":"#000000"},
            "alignment":{"horizontal":"justify","vertical":"center"},"numberFormat":""})"}) {
    const RangeFormat format = Parse(json);
    EXPECT_FALSE(format.font.bold || format.font.size || format.font.name || format.font.color ||
                 format.fill || format.horizontal || format.vertical || format.wrapText ||
                 format.numberFormat || format.border.color)
        << ::testing::PrintToString(std::wstring(json));
    EXPECT_TRUE(format.border.edges.empty());
  }
}

TEST(RangeFormats, TakeAFillAsObjectAndWrappingInsideTheAlignment) {
  EXPECT_EQ(Parse(LR"({"fill":{"color":"#102030"}})").fill, 0x302010);
  EXPECT_EQ(Parse(LR"({"alignment":{"wrapText":true}})").wrapText, true);
  EXPECT_EQ(Parse(LR"({"alignment":{"wrapText":true},"wrapText":false})").wrapText, false);
}

TEST(Borders, AreNamedByOneEdgeOrAList) {
  const std::vector<std::int32_t> all = {7, 8, 9, 10, 11, 12};
  EXPECT_EQ(EdgesOf(L"\"all\""), all);
  EXPECT_EQ(EdgesOf(LR"(["all","top"])"), all);
  EXPECT_EQ(Parse(LR"({"border":{"style":"thick"}})").border.edges, all);
  EXPECT_EQ(EdgesOf(LR"(["top","bottom","left","right"])"), (std::vector<std::int32_t>{8, 9, 7, 10}));
  EXPECT_EQ(EdgesOf(LR"(["inside_h","insideV","insideH","inside_v"])"), (std::vector<std::int32_t>{12, 11}));
  EXPECT_EQ(EdgesOf(LR"(["outer",3,null,["top"]])"), std::vector<std::int32_t>{});
}

TEST(Borders, AreDrawnAsTheirStyleSays) {
  struct Case {
    const wchar_t* style;
    std::int32_t line;
    std::optional<std::int32_t> weight;
  };
  for (const Case& each : {Case{L"\"thin\"", 1, 2}, Case{L"\"thick\"", 1, 4}, Case{L"\"dashed\"", -4115, 2},
                           Case{L"\"none\"", -4142, std::nullopt}}) {
    const auto line = Parse(L"{\"border\":{\"style\":" + std::wstring(each.style) + L"}}").border.line;
    ASSERT_TRUE(line);
    EXPECT_EQ(line->style, each.line);
    EXPECT_EQ(line->weight, each.weight);
  }
  EXPECT_FALSE(Parse(LR"({"border":{"style":"wavy"}})").border.line);
}

TEST(Borders, KeepWhatTheArgumentDoesNotName) {
  EXPECT_TRUE(Parse(LR"({"border":{}})").border.edges.empty());
  EXPECT_TRUE(Parse(LR"({"border":{"edges":"all"}})").border.edges.empty());
  const BorderFormat colored = Parse(LR"({"border":{"edges":"top","color":"#FF0000"}})").border;
  EXPECT_EQ(colored.edges, std::vector<std::int32_t>{8});
  EXPECT_EQ(colored.color, 255);
  EXPECT_FALSE(colored.line);
  // A colour would draw the line that goes.
  EXPECT_FALSE(Parse(LR"({"border":{"style":"none","color":"#FF0000"}})").border.color);
}

}  // namespace
}  // namespace qv
