#include "addin/pane_width.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/settings_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// Hosts round between pixels and points.
constexpr int kTolerancePt = 2;
/// The width that the program set itself takes this many ticks to come to rest.
constexpr std::int32_t kCooldownTicks = 2;
constexpr std::uint64_t kStableMs = 1000;

int Limited(int width) {
  return std::clamp(width, kMinPaneWidthPt, kMaxPaneWidthPt);
}

void StopReapplying(PaneWidthRecord& record) {
  record.reapplying = false;
  record.attemptsLeft = 0;
}

std::wstring GiveUpLine(const PaneWidthRecord& record, int width) {
  return Concat(L"PaneWidth reapply give-up (target=", record.target, L" cur=", width, L")");
}

PaneWidthActions Reapply(PaneWidthRecord& record, int width, std::uint64_t now) {
  if (std::abs(width - record.target) <= kTolerancePt) {
    StopReapplying(record);
    record.cooldown = kCooldownTicks;
    record.lastSaved = record.target;
    record.lastStable = record.lastObserved = width;
    return {.log = Concat(L"PaneWidth reapply done at ", width)};
  }
  if (record.reappliedOnce && width >= kLeastTrueWidthPt && width != record.lastObserved) {
    StopReapplying(record);
    record.lastObserved = width;
    record.lastChangeTick = now;
    return {.log = Concat(L"PaneWidth reapply give-up (user-takeover cur=", width, L" target=", record.target,
                          L")")};
  }
  record.lastObserved = width;
  if (record.attemptsLeft < 1) {
    StopReapplying(record);
    return {.log = GiveUpLine(record, width)};
  }
  --record.attemptsLeft;
  record.lastSaved = record.target;
  record.reappliedOnce = true;
  record.cooldown = kCooldownTicks;
  return {.apply = true,
          .log = record.attemptsLeft > 0
                     ? Concat(L"PaneWidth reapply -> ", record.target, L" try-left=", record.attemptsLeft)
                     : GiveUpLine(record, width)};
}

PaneWidthActions Watch(PaneWidthRecord& record, int width, std::uint64_t now) {
  if (record.cooldown >= 1 || width != record.lastObserved) {
    if (record.cooldown >= 1) --record.cooldown;
    record.lastObserved = width;
    record.lastChangeTick = now;
    return {};
  }
  if (now - record.lastChangeTick < kStableMs || width == record.lastStable) return {};
  record.lastStable = width;
  if (width < kLeastTrueWidthPt) return {.log = Concat(L"PaneWidth skip-noise cur=", width)};
  if (width == record.lastSaved) return {};
  record.lastSaved = width;
  return {.save = Limited(width)};
}

}  // namespace

PaneWidthRecord StartPaneWidth(int target) {
  return {.target = target, .attemptsLeft = kReapplyAttempts, .reapplying = true};
}

PaneWidthActions TickPaneWidth(PaneWidthRecord& record, std::optional<int> width, std::uint64_t now) {
  if (width.value_or(0) <= 0) return {};
  return record.reapplying ? Reapply(record, *width, now) : Watch(record, *width, now);
}

std::wstring PaneWidthSaved(PaneWidthRecord& record, bool ok, std::uint32_t error, const std::wstring& path) {
  record.saveOk = ok;
  record.saveError = error;
  return Concat(L"PaneWidth save pt=", record.lastSaved, L" ok=", ok, L" err=", error, L" file=", path);
}

std::optional<int> ShutdownPaneWidth(const PaneWidthRecord& record, std::optional<int> width) {
  if (width.value_or(0) < kLeastTrueWidthPt) return std::nullopt;
  return Limited(record.reapplying ? record.target : *width);
}

}  // namespace qv
