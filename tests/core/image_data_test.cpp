#include "tools/image_data.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tools/image_results.h"

namespace qv {
namespace {

std::string Decoded(std::wstring_view text) {
  const auto bytes = BytesOfBase64(text);
  return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size()) : "none";
}

std::vector<std::byte> Bytes(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

std::string Number(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

std::string Piece(const std::string& type, const std::string& content) {
  return Number(static_cast<std::uint32_t>(content.size())) + type + content + "crc!";
}

std::string PngFile(std::uint32_t width, std::uint32_t height) {
  return "\x89PNG\r\n\x1A\n" +
         Piece("IHDR", Number(width) + Number(height) + std::string("\x08\x06\0\0\0", 5)) +
         Piece("IDAT", "pixels") + Piece("IEND", "");
}

TEST(Base64Text, IsReadWithItsPaddingAndAcrossLines) {
  EXPECT_EQ(Decoded(L"YQ=="), "a");
  EXPECT_EQ(Decoded(L"YWI="), "ab");
  EXPECT_EQ(Decoded(L"YWJj"), "abc");
  EXPECT_EQ(Decoded(L" YW\r\nJj\t"), "abc");
  EXPECT_EQ(Decoded(L"data:image/png;base64,YWJj"), "abc");
  EXPECT_EQ(Decoded(L"//79"), "\xFF\xFE\xFD");
}

TEST(Base64Text, IsRefusedWhenItIsNone) {
  for (const wchar_t* text : {L"", L" ", L"=", L"Y", L"YQ", L"YQ=", L"YQ===", L"YWI", L"YWJj=", L"YQ==YQ==",
                              L"YW-_", L"YWJ\u00E9", L"data:image/png;base64", L"data:", L"data:,"})
    EXPECT_EQ(Decoded(text), "none") << text;
}

TEST(Base64Text, IsReadUpToItsLimitOnly) {
  EXPECT_TRUE(BytesOfBase64(std::wstring(400, L'A'), 300));
  EXPECT_FALSE(BytesOfBase64(std::wstring(404, L'A'), 300));
}

TEST(PngSize, IsThatOfTheHeader) {
  EXPECT_EQ(PngSize(Bytes(PngFile(1600, 900))), (PixelSize{1600, 900}));
  EXPECT_EQ(PngSize(Bytes(PngFile(1, 0x7FFFFFFF))), (PixelSize{1, 0x7FFFFFFF}));
  EXPECT_EQ(PngSize(Bytes(PngFile(3, 4) + "behind")), (PixelSize{3, 4}));
}

TEST(PngSize, IsUnknownForWhatIsNoWholeFile) {
  const std::string file = PngFile(3, 4);
  for (std::size_t length = 0; length < file.size(); ++length)
    EXPECT_FALSE(PngSize(Bytes(file.substr(0, length)))) << length;
  EXPECT_FALSE(PngSize(Bytes(PngFile(0, 4))));
  EXPECT_FALSE(PngSize(Bytes(PngFile(3, 0x80000000))));
  for (const std::size_t at : {0U, 11U, 12U, 33U}) {
    std::string broken = file;
    broken[at] = static_cast<char>(0xFF);
    EXPECT_FALSE(PngSize(Bytes(broken))) << at;
  }
  EXPECT_FALSE(PngSize(Bytes("GIF89a" + std::string(100, '\0'))));
}

TEST(PngSize, SurvivesWhateverComes) {
  std::mt19937 random(7);
  const std::string file = PngFile(30, 40);
  for (int round = 0; round < 20'000; ++round) {
    std::string changed = file.substr(0, random() % (file.size() + 1));
    for (unsigned change = random() % 4; change > 0 && !changed.empty(); --change)
      changed[random() % changed.size()] = static_cast<char>(random());
    static_cast<void>(PngSize(Bytes(changed)));
  }
}

TEST(PngSize, TellsPicturesThatAreTooLarge) {
  EXPECT_FALSE(IsTooLarge({8192, 4096}));
  EXPECT_TRUE(IsTooLarge({8192, 4097}));
  EXPECT_TRUE(IsTooLarge({0x7FFFFFFF, 0x7FFFFFFF}));
  EXPECT_FALSE(IsTooLarge({4000, 3000}));
}

TEST(Thumbnails, FitTheirSquareAndKeepTheShape) {
  EXPECT_EQ(FitInto({1600, 900}, 160), (PixelSize{160, 90}));
  EXPECT_EQ(FitInto({100, 50}, 160), (PixelSize{100, 50}));
  EXPECT_EQ(FitInto({160, 160}, 160), (PixelSize{160, 160}));
  EXPECT_EQ(FitInto({90, 1600}, 160), (PixelSize{9, 160}));
  EXPECT_EQ(FitInto({0x7FFFFFFF, 1}, 160), (PixelSize{160, 1}));
}

TEST(ImageResults, HaveTheirExactTexts) {
  const ImageAnchor anchor{L"S", L"P", 1, {}, 1, 2, 3, 4};
  const std::wstring json = AnchorJson(anchor);
  EXPECT_EQ(ScanResult(L"S", 2, 1, {L"{}", L"{}"}),
            LR"({"ok":true,"count":2,"skippedUnsupported":1,"sheetSummary":[{"sheetName":"S","count":2,)"
            LR"("anchors":[{},{}]}]})");
  EXPECT_EQ(ExtractResult({3, 4}, L"eA=="),
            LR"({"ok":true,"mediaType":"image/png","width":3,"height":4,"data":"eA=="})");
  EXPECT_EQ(ReplaceResult(false, anchor),
            LR"({"ok":true,"replaced":true,"hasUndo":false,"anchor":)" + json + L"}");
  EXPECT_EQ(UndoReplaceResult(anchor, L"eA=="),
            LR"({"anchor":)" + json + LR"(,"imageBase64":"eA==","batchMode":false})");
  EXPECT_EQ(BatchUndoResult(2, {L"restore_failed", L"anchor_stale"}),
            LR"({"ok":true,"restored":2,"failed":2,"failedReasons":["restore_failed","anchor_stale"]})");
  EXPECT_EQ(ReplaceFailedResult(L""), LR"({"error":"replace_failed"})");
  EXPECT_EQ(ReplaceFailedResult(L"x"), LR"({"error":"replace_failed","detail":"x"})");
  EXPECT_EQ(AnchorWithThumbnail(anchor, {L"eA==", {3, 4}}),
            json.substr(0, json.size() - 1) + LR"(,"thumbBase64":"eA==","width":3,"height":4})");
  EXPECT_EQ(AnchorWithThumbnail(anchor, {}), json);
}

}  // namespace
}  // namespace qv
