#include "host/document_layout.h"

#include <gtest/gtest.h>

#include "host/ribbon_layout.h"

namespace qv::test {
namespace {

using namespace devhost;

constexpr SIZE kClient{1200, 800};
constexpr int kRibbon = 100;

int Width(const RECT& area) {
  return area.right - area.left;
}

RECT ContentOf(const RECT& outer, PaneDock dock) {
  return LayOutPane({Width(outer), outer.bottom - outer.top}, dock, 96).content;
}

TEST(DocumentLayout, GivesAPaneItsContentWidthUpToHalfTheWindow) {
  const struct {
    int wished;
    int given;
  } cases[] = {{1, 60}, {400, 400}, {600, 600}, {601, 600}, {5000, 600}};
  for (const auto& entry : cases) {
    for (const PaneDock dock : {PaneDock::kLeft, PaneDock::kRight}) {
      const PaneWish wish{true, dock, entry.wished, 0};
      const auto layout = LayOutDocument(kClient, kRibbon, 96, {&wish, 1});
      EXPECT_EQ(Width(ContentOf(layout.panes[0], dock)), entry.given) << entry.wished;
      EXPECT_EQ(Width(layout.grid) + Width(layout.panes[0]), kClient.cx);
      EXPECT_EQ(layout.panes[0].top, kRibbon);
    }
  }
}

TEST(DocumentLayout, LeavesSomethingOfTheGridHoweverManyPanesThereAre) {
  const std::vector<PaneWish> wishes(5, PaneWish{true, PaneDock::kRight, 500, 0});
  const auto layout = LayOutDocument(kClient, kRibbon, 96, wishes);
  EXPECT_EQ(Width(layout.grid), 160);
  EXPECT_EQ(layout.panes[0].right, kClient.cx);
  EXPECT_EQ(layout.panes[1].right, layout.panes[0].left);
  EXPECT_EQ(Width(layout.panes[4]), 0);
}

TEST(DocumentLayout, KeepsThePlaceOfAHiddenPaneWithoutTakingItFromTheGrid) {
  const PaneWish wishes[] = {{false, PaneDock::kRight, 300, 0}, {true, PaneDock::kTop, 0, 200}};
  const auto layout = LayOutDocument(kClient, kRibbon, 96, wishes);
  EXPECT_EQ(Width(ContentOf(layout.panes[0], PaneDock::kRight)), 300);
  EXPECT_EQ(Width(layout.grid), kClient.cx);
  EXPECT_EQ(layout.grid.top, layout.panes[1].bottom);
  EXPECT_EQ(
      ContentOf(layout.panes[1], PaneDock::kTop).bottom - ContentOf(layout.panes[1], PaneDock::kTop).top,
      200);
}

/// Two groups: three large buttons and one.
std::vector<GroupSize> TwoGroups() {
  const ButtonSize button{true, 60, 90};
  return {{40, {button, button, button}}, {40, {button}}};
}

TEST(RibbonLayout, ShrinksGroupsFromTheLastUntilAllFit) {
  const auto metrics = MakeRibbonMetrics(32, 15, 96);
  const int padding = 2 * metrics.padding;
  const int large = 180 + padding + 60 + padding;
  const auto forms = [&](int available) {
    const auto places = LayOutGroups(TwoGroups(), available, metrics);
    return std::pair(places[0].form, places[1].form);
  };
  using enum GroupForm;
  EXPECT_EQ(forms(large), std::pair(kLarge, kLarge));
  // The second group would grow with its label beside the picture, so it stays until labels go.
  EXPECT_EQ(forms(large - 1), std::pair(kCompact, kLarge));
  EXPECT_EQ(forms(90 + padding + 60 + padding - 1), std::pair(kCompact, kIcons));
  EXPECT_EQ(forms(1), std::pair(kIcons, kIcons));
}

TEST(RibbonLayout, PutsNoTwoButtonsOnOneSpotInAnyForm) {
  const auto metrics = MakeRibbonMetrics(48, 20, 144);
  for (const int available : {2000, 300, 10}) {
    std::vector<RECT> seen;
    for (const auto& group : LayOutGroups(TwoGroups(), available, metrics)) {
      for (const RECT& button : group.buttons) {
        RECT common{};
        for (const RECT& other : seen)
          EXPECT_FALSE(IntersectRect(&common, &button, &other));
        EXPECT_GE(button.left, group.area.left);
        EXPECT_LE(button.right, group.area.right);
        EXPECT_LE(button.bottom, metrics.header + metrics.content);
        seen.push_back(button);
      }
    }
  }
}

TEST(RibbonLayout, BreaksALabelWhereItBecomesNarrowest) {
  const auto measure = [](std::wstring_view text) { return static_cast<int>(text.size()) * 10; };
  const struct {
    const wchar_t* label;
    std::vector<std::wstring> lines;
  } cases[] = {
      {L"Chat", {L"Chat"}},
      {L"Quick translate", {L"Quick", L"translate"}},
      {L"Delete all blank rows", {L"Delete all", L"blank rows"}},
      {L"Unbreakable", {L"Unbreakable"}},
      {L"ИИ-помощник", {L"ИИ-", L"помощник"}},
      {L"删除空白行", {L"删除", L"空白行"}},
      {L"クイック翻訳", {L"クイック", L"翻訳"}},
      {L"", {L""}},
  };
  for (const auto& entry : cases)
    EXPECT_EQ(WrapLabel(entry.label, 40, measure), entry.lines);
}

}  // namespace
}  // namespace qv::test
