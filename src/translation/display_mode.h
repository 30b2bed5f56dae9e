#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qv {

// Switching translated cells between their displays: what the page may ask, and what it is told.

enum class DisplayMode { kDual, kTarget, kOriginal };
enum class DisplayScope { kSelection, kSheet, kSession };

/// "dual", "target", "original" or "restore", which means the same; nothing for any other word.
[[nodiscard]] std::optional<DisplayMode> ParseDisplayMode(std::wstring_view mode);
/// "selection" or "sheet"; every other word means the session.
[[nodiscard]] DisplayScope ParseDisplayScope(std::wstring_view scope);

[[nodiscard]] std::wstring_view DisplayModeName(DisplayMode mode);
[[nodiscard]] std::wstring_view DisplayScopeName(DisplayScope scope);

/// What became of the units of one request.
struct DisplayTally {
  std::size_t applied = 0;
  std::size_t failed = 0;
  std::size_t skipped = 0;

  bool operator==(const DisplayTally&) const = default;
};

inline constexpr std::wstring_view kUnknownDisplayMode = L"未知的显示模式";
inline constexpr std::wstring_view kDisplayNotConnected = L"Excel 未连接";
inline constexpr std::wstring_view kDisplaySelectionUnreadable = L"无法读取当前选区";
inline constexpr std::wstring_view kDisplayNothingSelected = L"请先选中要切换的单元格";
/// For requests that would get in the way of a run's own writes.
inline constexpr std::wstring_view kDisplayRunning = L"正在翻译，请稍候再试";

/// Why nothing of the scope can be switched: `translated` units lie in it, `toChange` of them would change.
/// Empty when the switch can begin.
[[nodiscard]] std::wstring_view EmptyScopeMessage(DisplayMode mode, DisplayScope scope,
                                                  std::size_t translated, std::size_t toChange);
/// What a finished switch says; empty when it changed something or had nothing to change.
[[nodiscard]] std::wstring_view SwitchFailureMessage(const DisplayTally& tally);
/// The same for a new style.
[[nodiscard]] std::wstring_view StyleFailureMessage(const DisplayTally& tally);

/// Answers to the page; a request with a message is one that failed.
[[nodiscard]] std::wstring DisplayModeDoneScript(std::wstring_view mode, const DisplayTally& tally,
                                                 std::wstring_view message);
[[nodiscard]] std::wstring TargetStyleDoneScript(const DisplayTally& tally, std::wstring_view message);
/// `action` is "restoreAll" or "applyAll".
[[nodiscard]] std::wstring BatchDoneScript(std::wstring_view action);

/// `mode` is a name, or what the page sent in its place.
[[nodiscard]] std::wstring DisplayModeLogLine(std::wstring_view mode, DisplayScope scope,
                                              const DisplayTally& tally);
[[nodiscard]] std::wstring RestyleLogLine(const DisplayTally& tally);

}  // namespace qv
