#include "addin/pane_width.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::uint64_t kTickMs = 300;
/// A width that cannot be read.
constexpr std::optional<int> kUnreadable = std::nullopt;

/// A pane's watch driven tick by tick; its clock starts at a day, as a machine that runs for long.
class Watch {
 public:
  explicit Watch(int target) : record(StartPaneWidth(target)) {}

  PaneWidthActions Tick(std::optional<int> width) {
    now += kTickMs;
    const PaneWidthActions actions = TickPaneWidth(record, width, now);
    if (!actions.log.empty()) log.push_back(ToUtf8(actions.log));
    applies += actions.apply ? 1 : 0;
    if (actions.save) saves.push_back(*actions.save);
    return actions;
  }

  void Ticks(int count, std::optional<int> width) {
    for (int i = 0; i < count; ++i)
      static_cast<void>(Tick(width));
  }

  /// A watch whose width has stuck at once, with nothing left to wait for.
  static Watch Settled(int target) {
    Watch watch(target);
    watch.Ticks(3, target);
    watch.log.clear();
    return watch;
  }

  PaneWidthRecord record;
  std::uint64_t now = 86'400'000;
  int applies = 0;
  std::vector<int> saves;
  std::vector<std::string> log;
};

using Lines = std::vector<std::string>;

TEST(PaneWidth, IsDoneWithinTwoPointsOfTheTarget) {
  for (const int width : {518, 519, 520, 521, 522}) {
    Watch watch(520);
    watch.Ticks(1, width);
    EXPECT_FALSE(watch.record.reapplying) << width;
    EXPECT_EQ(watch.record.attemptsLeft, 0);
    EXPECT_EQ(watch.record.cooldown, 2);
    EXPECT_EQ(watch.record.lastSaved, 520);
    EXPECT_EQ(watch.record.lastStable, width);
    EXPECT_EQ(watch.record.lastObserved, width);
    EXPECT_EQ(watch.log, Lines{"PaneWidth reapply done at " + std::to_string(width)});
    // What has settled is not saved again, however long it lasts.
    watch.Ticks(20, width);
    EXPECT_TRUE(watch.saves.empty()) << width;
    EXPECT_EQ(watch.applies, 0);
  }
  for (const int width : {517, 523}) {
    Watch watch(520);
    EXPECT_TRUE(watch.Tick(width).apply) << width;
  }
}

TEST(PaneWidth, IsAppliedAgainUntilItSticks) {
  Watch watch(520);
  watch.Ticks(2, 300);
  EXPECT_EQ(watch.applies, 2);
  EXPECT_EQ(watch.record.lastSaved, 520);
  EXPECT_EQ(watch.record.lastObserved, 300);
  EXPECT_EQ(watch.record.cooldown, 2);
  watch.Ticks(20, 520);
  EXPECT_EQ(watch.applies, 2);
  EXPECT_TRUE(watch.saves.empty());
  EXPECT_EQ(watch.log, (Lines{"PaneWidth reapply -> 520 try-left=9", "PaneWidth reapply -> 520 try-left=8",
                              "PaneWidth reapply done at 520"}));
}

TEST(PaneWidth, StopsWhenItsAttemptsRunOut) {
  Watch watch(520);
  // Also what a floating pane looks like, whose width cannot be put.
  watch.Ticks(30, 300);
  EXPECT_EQ(watch.applies, kReapplyAttempts);
  EXPECT_FALSE(watch.record.reapplying);
  ASSERT_EQ(watch.log.size(), static_cast<std::size_t>(kReapplyAttempts) + 1);
  EXPECT_EQ(watch.log[8], "PaneWidth reapply -> 520 try-left=1");
  EXPECT_EQ(watch.log[9], "PaneWidth reapply give-up (target=520 cur=300)");
  EXPECT_EQ(watch.log[10], "PaneWidth reapply give-up (target=520 cur=300)");
}

TEST(PaneWidth, LastAttemptMayStillStick) {
  Watch watch(520);
  watch.Ticks(kReapplyAttempts, 300);
  EXPECT_TRUE(watch.record.reapplying);
  watch.Ticks(1, 520);
  EXPECT_EQ(watch.log.back(), "PaneWidth reapply done at 520");
}

TEST(PaneWidth, UserWhoDragsTakesOver) {
  Watch watch(520);
  watch.Ticks(1, 300);
  watch.Ticks(1, 340);
  EXPECT_EQ(watch.applies, 1);
  EXPECT_FALSE(watch.record.reapplying);
  EXPECT_EQ(watch.record.attemptsLeft, 0);
  EXPECT_EQ(watch.record.lastObserved, 340);
  EXPECT_EQ(watch.record.lastChangeTick, watch.now);
  EXPECT_EQ(watch.log.back(), "PaneWidth reapply give-up (user-takeover cur=340 target=520)");
  // From here on it is the user's width like any other.
  watch.Ticks(10, 340);
  EXPECT_EQ(watch.saves, std::vector{340});
}

TEST(PaneWidth, OtherChangesWhileItIsAppliedAreNotTheUsers) {
  Watch before(520);
  // Nothing was applied yet: the host is still laying out.
  before.Ticks(1, 300);
  EXPECT_EQ(before.applies, 1);

  Watch narrow(520);
  narrow.Ticks(1, 300);
  // Collapsing on its way to somewhere.
  narrow.Ticks(1, 199);
  EXPECT_EQ(narrow.applies, 2);
  EXPECT_TRUE(narrow.record.reapplying);
  narrow.Ticks(1, 200);
  EXPECT_FALSE(narrow.record.reapplying);
}

TEST(PaneWidth, UnreadableOrNoWidthChangesNothing) {
  for (const std::optional<int> width : {kUnreadable, std::optional(0), std::optional(-5)}) {
    Watch fresh(520);
    fresh.Ticks(40, width);
    EXPECT_EQ(fresh.applies, 0);
    EXPECT_EQ(fresh.record.attemptsLeft, kReapplyAttempts);
    EXPECT_TRUE(fresh.log.empty());

    // Docked at the top for a while, and back.
    Watch settled = Watch::Settled(520);
    settled.Ticks(40, width);
    settled.Ticks(40, 520);
    EXPECT_TRUE(settled.saves.empty());
  }
}

TEST(PaneWidth, DragIsSavedOnceAfterAFullSecondOfRest) {
  Watch watch = Watch::Settled(520);
  // While it moves nothing is saved.
  for (const int width : {540, 560, 600, 640})
    watch.Ticks(1, width);
  // 300, 600 and 900 ms of rest.
  watch.Ticks(3, 640);
  EXPECT_TRUE(watch.saves.empty());
  watch.Ticks(20, 640);
  EXPECT_EQ(watch.saves, std::vector{640});
  // Back to where it was applied: another width, saved too.
  watch.Ticks(20, 520);
  EXPECT_EQ(watch.saves, (std::vector{640, 520}));
}

TEST(PaneWidth, RestOfExactlyOneSecondIsEnough) {
  Watch watch = Watch::Settled(520);
  watch.Ticks(1, 640);
  const std::uint64_t changed = watch.now;
  EXPECT_FALSE(TickPaneWidth(watch.record, 640, changed + 999).save);
  EXPECT_EQ(TickPaneWidth(watch.record, 640, changed + 1000).save, 640);
}

TEST(PaneWidth, RestIsCountedAnewAfterEveryChange) {
  Watch watch = Watch::Settled(520);
  for (int round = 0; round < 6; ++round) {
    watch.Ticks(1, 600 + round);
    watch.Ticks(3, 600 + round);
  }
  EXPECT_TRUE(watch.saves.empty());
}

TEST(PaneWidth, WhatTheProgramSetIsNotTheUsers) {
  Watch watch(520);
  watch.Ticks(1, 520);
  // Two ticks of cooling down take every width as it is.
  watch.Ticks(1, 505);
  EXPECT_EQ(watch.record.cooldown, 1);
  watch.Ticks(1, 523);
  EXPECT_EQ(watch.record.cooldown, 0);
  EXPECT_EQ(watch.record.lastChangeTick, watch.now);
  EXPECT_EQ(watch.record.lastObserved, 523);
  watch.Ticks(3, 523);
  EXPECT_TRUE(watch.saves.empty());
  watch.Ticks(1, 523);
  EXPECT_EQ(watch.saves, std::vector{523});
}

TEST(PaneWidth, CollapsedPaneIsNeverSaved) {
  struct Case {
    int width;
    std::vector<int> saves;
    Lines log;
  };
  const Case cases[] = {
      {180, {}, {"PaneWidth skip-noise cur=180"}},
      {199, {}, {"PaneWidth skip-noise cur=199"}},
      // From here on it is a choice, but a narrow one is widened to what is stored.
      {200, {240}, {}},
      {239, {240}, {}},
      {240, {240}, {}},
      {1600, {1600}, {}},
      {1700, {1600}, {}},
  };
  for (const Case& test : cases) {
    Watch watch = Watch::Settled(520);
    watch.Ticks(30, test.width);
    EXPECT_EQ(watch.saves, test.saves) << test.width;
    EXPECT_EQ(watch.log, test.log) << test.width;
    EXPECT_EQ(watch.record.lastStable, test.width);
    // Unfolded again to the width that is stored: nothing to save.
    if (test.saves.empty()) {
      watch.Ticks(30, 520);
      EXPECT_TRUE(watch.saves.empty()) << test.width;
    }
  }
}

TEST(PaneWidth, SaveIsKeptWithItsOutcome) {
  Watch watch = Watch::Settled(520);
  watch.Ticks(10, 1700);
  EXPECT_EQ(watch.record.lastSaved, 1700);
  EXPECT_EQ(ToUtf8(PaneWidthSaved(watch.record, false, 5, L"C:\\s.json")),
            "PaneWidth save pt=1700 ok=0 err=5 file=C:\\s.json");
  EXPECT_FALSE(watch.record.saveOk);
  EXPECT_EQ(watch.record.saveError, 5U);
  EXPECT_EQ(ToUtf8(PaneWidthSaved(watch.record, true, 0, L"")), "PaneWidth save pt=1700 ok=1 err=0 file=");
  EXPECT_TRUE(watch.record.saveOk);
}

TEST(PaneWidth, ShutdownSavesWhatTheUserLastHad) {
  const Watch settled = Watch::Settled(520);
  EXPECT_EQ(ShutdownPaneWidth(settled.record, 610), 610);
  EXPECT_EQ(ShutdownPaneWidth(settled.record, 200), 240);
  EXPECT_EQ(ShutdownPaneWidth(settled.record, 1700), 1600);
  EXPECT_EQ(ShutdownPaneWidth(settled.record, 199), std::nullopt);
  EXPECT_EQ(ShutdownPaneWidth(settled.record, 0), std::nullopt);
  EXPECT_EQ(ShutdownPaneWidth(settled.record, kUnreadable), std::nullopt);
  // The host's own width does not replace the one that is still being applied.
  EXPECT_EQ(ShutdownPaneWidth(StartPaneWidth(520), 300), 520);
  // It does once that was given up.
  Watch givenUp(520);
  givenUp.Ticks(30, 300);
  EXPECT_EQ(ShutdownPaneWidth(givenUp.record, 300), 300);
}

}  // namespace
}  // namespace qv
