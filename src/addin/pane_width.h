#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qv {

// How a pane keeps the width that the user gave it. A host lays a new pane out itself and may override the
// width it was asked for, so the width is applied again until it sticks; from then on what the user drags it
// to is remembered. All widths are points.

/// Narrower panes are collapsing or hidden: never taken for the user's choice.
inline constexpr int kLeastTrueWidthPt = 200;

/// How often a new pane's width is applied again, one try a tick of 300 ms: hosts settle their layout within
/// about three seconds, and after that a width that does not stick is the host's last word.
inline constexpr int kReapplyAttempts = 10;

/// The watch over one pane's width.
struct PaneWidthRecord {
  /// What is applied after the creation.
  std::int32_t target = 0;
  /// Seen at the previous tick.
  std::int32_t lastObserved = 0;
  /// Last written to the settings file, or applied.
  std::int32_t lastSaved = 0;
  /// Last looked at as stable.
  std::int32_t lastStable = 0;
  /// Milliseconds since system start when the width last changed.
  std::uint64_t lastChangeTick = 0;
  /// Ticks that still have to pass after the program itself set the width.
  std::int32_t cooldown = 0;
  std::int32_t attemptsLeft = 0;
  bool reapplying = false;
  /// The target was applied again at least once; a change after that is the user's.
  bool reappliedOnce = false;
  /// Of the last save, for the log.
  bool saveOk = false;
  std::uint32_t saveError = 0;
};

/// The record of a new pane that was asked to be `target` wide.
[[nodiscard]] PaneWidthRecord StartPaneWidth(int target);

/// What one tick asks for.
struct PaneWidthActions {
  /// Set the width to one point more than the target, then to the target: only a change makes the host lay
  /// the pane out again. Whether the host takes them shows at the next tick.
  bool apply = false;
  /// The width to save, already limited to what is stored; see `PaneWidthSaved`.
  std::optional<int> save = {};
  /// A line for the log, without its end; may be empty.
  std::wstring log = {};
};

/// One look at the pane. `width` is absent when it cannot be read; such a look, or one at no width at all (a
/// pane docked at the top or bottom has 0), changes nothing. `now` is in milliseconds since system start.
[[nodiscard]] PaneWidthActions TickPaneWidth(PaneWidthRecord& record, std::optional<int> width,
                                             std::uint64_t now);

/// Keeps the outcome of a save that a tick asked for (`error` is a Windows error code); the line for the log.
[[nodiscard]] std::wstring PaneWidthSaved(PaneWidthRecord& record, bool ok, std::uint32_t error,
                                          const std::wstring& path);

/// What is saved of a live pane at shutdown: its width, or its target while that is still being applied;
/// nothing for a pane without a true width.
[[nodiscard]] std::optional<int> ShutdownPaneWidth(const PaneWidthRecord& record, std::optional<int> width);

}  // namespace qv
