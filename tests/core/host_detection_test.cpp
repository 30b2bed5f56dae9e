#include "addin/host_detection.h"

#include <gtest/gtest.h>

#include "foundation/text.h"

namespace qv {
namespace {

TEST(HostDetection, KnowsWpsByItsNameOrPath) {
  struct Case {
    const wchar_t* name;
    const wchar_t* path;
    bool wps;
  };
  const Case cases[] = {
      {L"Microsoft Excel", L"C:\\Program Files\\Microsoft Office\\root\\Office16", false},
      {L"WPS Spreadsheets", L"", true},
      {L"WPS 表格", L"", true},
      {L"金山表格", L"", true},
      {L"Kingsoft Spreadsheets", L"", true},
      {L"ET", L"", true},
      {L"Microsoft Excel", L"C:\\Users\\me\\AppData\\Local\\Kingsoft\\WPS Office\\office6", true},
      {L"Microsoft Excel", L"D:\\ET", true},
      // The letters matter.
      {L"wps", L"c:\\kingsoft\\et", false},
      {L"", L"", false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(IsWpsApplication(c.name, c.path), c.wps) << ToUtf8(c.name) << " in " << ToUtf8(c.path);
}

}  // namespace
}  // namespace qv
