#include "addin/workbook/workbook_fixture.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "foundation/logging.h"

namespace qv::test {
namespace {

std::filesystem::path TracePath() {
  return GetPaneTraceLogPath();
}

}  // namespace

TraceTail::TraceTail() {
  std::error_code missing;
  const auto size = std::filesystem::file_size(TracePath(), missing);
  start_ = missing ? 0 : static_cast<std::streamoff>(size);
}

std::wstring TraceTail::Text() const {
  std::ifstream file(TracePath(), std::ios::binary);
  file.seekg(start_);
  const std::string bytes((std::istreambuf_iterator<char>(file)), {});
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::copy_n(bytes.data(), text.size() * sizeof(wchar_t), reinterpret_cast<char*>(text.data()));
  return text;
}

void WorkbookTest::SetUp() {
  book = engine.AddWorkbook(L"Book.xlsx", L"C:\\Books", {L"Sheet1", L"Data"});
  target.SetApplication(engine.Application());
}

void WorkbookTest::TearDown() {
  engine.Faults().Clear();
  target.ReleaseReferences();
  EXPECT_EQ(engine.LiveObjects(), 0);
  EXPECT_EQ(engine.WrongThreadCalls(), 0);
  EXPECT_TRUE(engine.Host().displayAlerts);
  EXPECT_TRUE(engine.Host().screenUpdating);
}

}  // namespace qv::test
