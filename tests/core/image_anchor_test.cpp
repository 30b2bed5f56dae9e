#include "tools/image_anchor.h"

#include <gtest/gtest.h>

#include "foundation/text.h"

namespace qv {
namespace {

ImageAnchor Sample() {
  return {L"Übersicht \"A\"", L"Picture 2", 3, {2, 1}, 123.75, 60, -0.5, 1e6};
}

constexpr wchar_t kSampleJson[] =
    LR"({"v":1,"host":"excel","kind":"excel_shape","sheetName":"Übersicht \"A\"","shapeName":"Picture 2",)"
    LR"("shapeIndex":3,"childPath":[2,1],"widthPt":123.75,"heightPt":60,"leftPt":-0.5,"topPt":1000000})";

/// The sample's text with one part of it replaced.
std::wstring Changed(std::wstring_view from, std::wstring_view to) {
  EXPECT_TRUE(Contains(kSampleJson, from));
  return ReplaceAll(kSampleJson, from, to);
}

TEST(ImageAnchor, IsWrittenWithItsKeysInOrder) {
  EXPECT_EQ(AnchorJson(Sample()), kSampleJson);
  const std::wstring more = AnchorJson({L"S", L"P", 1, {}, 1, 2, 3, 4}, L",\"thumbBase64\":\"x\"");
  EXPECT_TRUE(
      more.ends_with(LR"("childPath":[],"widthPt":1,"heightPt":2,"leftPt":3,"topPt":4,"thumbBase64":"x"})"));
}

TEST(ImageAnchor, ReadsWhatItWroteAndIgnoresTheRest) {
  const auto anchor = ParseAnchor(AnchorJson(Sample(), L",\"thumbBase64\":\"x\",\"width\":5,\"height\":6"));
  ASSERT_TRUE(anchor);
  EXPECT_EQ(AnchorJson(*anchor), kSampleJson);
  EXPECT_TRUE(ParseAnchor(Changed(L",\"childPath\":[2,1]", L""))->childPath.empty());
  EXPECT_TRUE(ParseAnchor(Changed(L"\"v\":1", L"\"v\":9")));
}

TEST(ImageAnchor, RefusesWhatIsNone) {
  for (const std::wstring& json :
       {std::wstring(), std::wstring(L"null"), std::wstring(L"[1]"), std::wstring(L"\"excel\""),
        Changed(L"\"excel\"", L"\"Excel\""), Changed(L"excel_shape", L"word_shape"),
        Changed(L"\"shapeIndex\":3", L"\"shapeIndex\":0"),
        Changed(L"\"shapeIndex\":3", L"\"shapeIndex\":1.5"),
        Changed(L"\"shapeIndex\":3", L"\"shapeIndex\":4e9"), Changed(L"[2,1]", L"[2,0]"),
        Changed(L"[2,1]", L"[2,\"1\"]"), Changed(L"[2,1]", L"5"), Changed(L"[2,1]", L"[[1]]"),
        Changed(L"\"widthPt\":123.75", L"\"widthPt\":\"123\""),
        Changed(L"\"topPt\":1000000", L"\"topPt\":1e999"), Changed(L"Übersicht \\\"A\\\"", L"")}) {
    EXPECT_FALSE(ParseAnchor(json)) << ToUtf8(json);
  }
}

TEST(ImageAnchor, FollowsGroupsOnlySoFarDown) {
  std::wstring path = L"1";
  for (std::size_t depth = 1; depth < kMaxChildPath; ++depth)
    path += L",1";
  EXPECT_EQ(ParseAnchor(Changed(L"2,1", path))->childPath.size(), kMaxChildPath);
  EXPECT_FALSE(ParseAnchor(Changed(L"2,1", path + L",1")));
  EXPECT_FALSE(ParseAnchor(Changed(L"[2,1]", std::wstring(100'000, L'['))));
}

TEST(ImageAnchor, TheSamePictureMayBeOffByAHostsRounding) {
  const struct {
    double ImageAnchor::*field;
  } fields[] = {{&ImageAnchor::left}, {&ImageAnchor::top}, {&ImageAnchor::width}, {&ImageAnchor::height}};
  for (const auto& [field] : fields) {
    ImageAnchor other = Sample();
    other.*field += 0.09;
    EXPECT_TRUE(IsSamePicture(Sample(), other));
    other.*field += 0.05;
    EXPECT_FALSE(IsSamePicture(Sample(), other));
  }
  ImageAnchor moved = Sample();
  moved.shapeIndex = 1;
  EXPECT_TRUE(IsSamePicture(Sample(), moved));
  moved.childPath = {2};
  EXPECT_FALSE(IsSamePicture(Sample(), moved));
  ImageAnchor renamed = Sample();
  renamed.shapeName = L"picture 2";
  EXPECT_FALSE(IsSamePicture(Sample(), renamed));
  ImageAnchor elsewhere = Sample();
  elsewhere.sheetName = L"B";
  EXPECT_FALSE(IsSamePicture(Sample(), elsewhere));
}

}  // namespace
}  // namespace qv
