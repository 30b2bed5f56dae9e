#include "panel/image_preview_page.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

bool Has(const std::string& page, std::string_view part) {
  return page.find(part) != std::string::npos;
}

TEST(ImagePreviewPage, ReadsTheMessage) {
  const ImagePreview full = ReadImagePreview(
      L"{\"action\":\"openImagePreview\",\"imageBase64\":\"QUJD\",\"mediaType\":\"image/jpeg\","
      L"\"title\":\"Chart \\u4e2d\",\"downloadName\":\"chart.jpg\"}");
  EXPECT_EQ(full.imageBase64, L"QUJD");
  EXPECT_EQ(full.mediaType, L"image/jpeg");
  EXPECT_EQ(full.title, L"Chart 中");
  EXPECT_EQ(full.downloadName, L"chart.jpg");
  EXPECT_EQ(ReadImagePreview(L"{\"imageBase64\":\"QUJD\"}").downloadName, L"image.png");
}

TEST(ImagePreviewPage, ShowsThePictureAndOffersItForSaving) {
  const std::string page = BuildImagePreviewPage({L"QUJD", L"image/jpeg", L"Sales", L"sales.jpg"});
  EXPECT_TRUE(Has(page, "<title>Sales</title>"));
  EXPECT_TRUE(Has(page, "<img alt=\"Sales\" src=\"data:image/jpeg;base64,QUJD\">"));
  EXPECT_TRUE(Has(page, "<a download=\"sales.jpg\">"));
}

TEST(ImagePreviewPage, TakesThePictureInEveryUsualForm) {
  for (const wchar_t* form : {L"QUJD", L"QU\r\nJD ", L"data:image/gif;base64,QUJD"}) {
    EXPECT_TRUE(Has(BuildImagePreviewPage({form, L"image/png", L"", L"a.png"}), ";base64,QUJD\""));
  }
}

TEST(ImagePreviewPage, NothingFromOutsideBecomesMarkup) {
  const std::string page = BuildImagePreviewPage(
      {L"QUJD", L"image/png\" onerror=\"x", L"</title><script>x</script>", L"a\" onclick=\"x"});
  EXPECT_TRUE(Has(page, "data:image/png;base64,QUJD"));
  EXPECT_TRUE(Has(page, "&lt;/title&gt;&lt;script&gt;"));
  EXPECT_TRUE(Has(page, "download=\"a&quot; onclick=&quot;x\""));
  EXPECT_FALSE(Has(page, "<script>x"));
}

TEST(ImagePreviewPage, HasNoPageWithoutAPicture) {
  for (const wchar_t* none : {L"", L"  ", L"data:image/png;base64,", L"\"><b>", L"QU%4D"}) {
    EXPECT_EQ(BuildImagePreviewPage({none, L"image/png", L"t", L"a.png"}), "");
  }
}

}  // namespace
}  // namespace qv
