#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "foundation/text.h"
#include "panel/page_url.h"
#include "panel/panel_actions.h"

namespace qv {
namespace {

std::vector<std::string> DocumentLines() {
  std::ifstream file(QV_PROTOCOL_DOCUMENT);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

/// First column of the table under a heading.
std::vector<std::string> FirstColumn(const std::string& heading) {
  std::vector<std::string> names;
  bool inside = false;
  for (const std::string& line : DocumentLines()) {
    if (line.starts_with("## ")) inside = line == "## " + heading;
    if (inside && line.starts_with("| `")) names.push_back(line.substr(3, line.find('`', 3) - 3));
  }
  return names;
}

TEST(ProtocolDocument, ListsEveryActionOfTheRouterInItsOrder) {
  std::vector<std::string> built;
  for (const PanelActionRow& row : PanelActionTable())
    built.push_back(ToUtf8(row.name));
  EXPECT_EQ(FirstColumn("From a page"), built);
}

TEST(ProtocolDocument, DescribesEveryToolThatItDoesNotPutOff) {
  std::vector<std::string> offered;
  for (const std::string& line : DocumentLines()) {
    if (line.starts_with("| `") && line.find("a workbook tool (below)") != std::string::npos) {
      offered.push_back(line.substr(3, line.find('`', 3) - 3));
    }
  }
  std::vector<std::string> described = FirstColumn("Workbook tools");
  EXPECT_FALSE(described.empty());
  for (std::vector<std::string>* names : {&offered, &described})
    std::ranges::sort(*names);
  EXPECT_EQ(offered, described);
}

TEST(ProtocolDocument, ListsEveryPage) {
  std::string text;
  for (const std::string& line : DocumentLines())
    text += line + "\n";
  std::string pages;
  for (const std::wstring_view page : KnownPanelPages())
    pages += (pages.empty() ? "Pages: `" : "`, `") + ToUtf8(page);
  std::string unwrapped = text;
  for (std::size_t at = 0; (at = unwrapped.find(",\n", at)) != std::string::npos;)
    unwrapped.replace(at, 2, ", ");
  EXPECT_NE(unwrapped.find(pages + "`."), std::string::npos) << pages;
}

}  // namespace
}  // namespace qv
