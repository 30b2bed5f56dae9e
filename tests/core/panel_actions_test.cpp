#include <gtest/gtest.h>

#include <set>

#include "foundation/text.h"
#include "panel/panel_actions.h"

namespace qv {
namespace {

/// Notes which member was called with which action.
class Recorder : public PanelActions {
 public:
  void SetAccessToken(const PanelMessage& message) override { Note("SetAccessToken", message); }
  void Start(const PanelMessage& message) override { Note("Start", message); }
  void WorkbookTool(const PanelMessage& message) override { Note("WorkbookTool", message); }

  std::string last;

 private:
  void Note(const char* member, const PanelMessage& message) {
    last = std::string(member) + " " + ToUtf8(message.action) + " " + ToUtf8(message.text);
  }
};

std::string Routed(const wchar_t* action) {
  Recorder recorder;
  RoutePanelMessage(recorder, {action, L"{}"});
  return recorder.last;
}

TEST(PanelActions, ReachTheirOwner) {
  EXPECT_EQ(Routed(L"setAccessToken"), "SetAccessToken setAccessToken {}");
  EXPECT_EQ(Routed(L"start"), "Start start {}");
  EXPECT_EQ(Routed(L"restart"), "Start restart {}");
  EXPECT_EQ(Routed(L"startSelection"), "Start startSelection {}");
  EXPECT_EQ(Routed(L"excelChartCreate"), "WorkbookTool excelChartCreate {}");
  EXPECT_EQ(Routed(L"autofillScan"), "WorkbookTool autofillScan {}");
}

TEST(PanelActions, AreComparedExactly) {
  for (const wchar_t* action : {L"", L"Start", L"start ", L"starts", L"excel", L"noSuchAction"})
    EXPECT_EQ(Routed(action), "") << ToUtf8(action);
}

TEST(PanelActions, StandOnceEachInTheDocumentedOrder) {
  const auto rows = PanelActionTable();
  std::set<std::wstring_view> names;
  for (const PanelActionRow& row : rows)
    EXPECT_TRUE(names.insert(row.name).second) << ToUtf8(row.name);
  EXPECT_EQ(rows.size(), 72U);
  EXPECT_EQ(rows.front().name, L"openWorkspace");
  EXPECT_EQ(rows.back().name, L"quickTranslateWrite");
}

}  // namespace
}  // namespace qv
