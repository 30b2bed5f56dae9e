#include "translation/display_mode.h"

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

struct ModeWord {
  std::wstring_view word;
  DisplayMode mode;
};

/// The first word of a mode is its name.
constexpr ModeWord kModes[] = {
    {L"dual", DisplayMode::kDual},
    {L"target", DisplayMode::kTarget},
    {L"original", DisplayMode::kOriginal},
    {L"restore", DisplayMode::kOriginal},
};

struct ScopeWord {
  std::wstring_view word;
  DisplayScope scope;
};

constexpr ScopeWord kScopes[] = {
    {L"selection", DisplayScope::kSelection},
    {L"sheet", DisplayScope::kSheet},
    {L"session", DisplayScope::kSession},
};

bool ChangedNothing(const DisplayTally& tally) {
  return tally.applied == 0 && tally.failed > 0;
}

/// The members that every answer begins or ends with.
std::wstring Counts(const DisplayTally& tally) {
  return Concat(L",applied:", tally.applied, L",failed:", tally.failed);
}

}  // namespace

std::optional<DisplayMode> ParseDisplayMode(std::wstring_view mode) {
  for (const ModeWord& entry : kModes) {
    if (entry.word == mode) return entry.mode;
  }
  return std::nullopt;
}

DisplayScope ParseDisplayScope(std::wstring_view scope) {
  for (const ScopeWord& entry : kScopes) {
    if (entry.word == scope) return entry.scope;
  }
  return DisplayScope::kSession;
}

std::wstring_view DisplayModeName(DisplayMode mode) {
  for (const ModeWord& entry : kModes) {
    if (entry.mode == mode) return entry.word;
  }
  return {};
}

std::wstring_view DisplayScopeName(DisplayScope scope) {
  for (const ScopeWord& entry : kScopes) {
    if (entry.scope == scope) return entry.word;
  }
  return {};
}

std::wstring_view EmptyScopeMessage(DisplayMode mode, DisplayScope scope, std::size_t translated,
                                    std::size_t toChange) {
  if (translated == 0 && scope == DisplayScope::kSelection) {
    return L"选中的单元格没有翻译结果，请先翻译或重新选择";
  }
  if (translated == 0 && scope == DisplayScope::kSheet) {
    return L"当前工作表没有翻译结果，请切换到已翻译的工作表";
  }
  if (mode == DisplayMode::kOriginal && toChange == 0) return L"没有可还原的单元格";
  return {};
}

std::wstring_view SwitchFailureMessage(const DisplayTally& tally) {
  return ChangedNothing(tally) ? L"切换显示模式失败，请检查工作表是否受保护" : L"";
}

std::wstring_view StyleFailureMessage(const DisplayTally& tally) {
  return ChangedNothing(tally) ? L"应用译文样式失败，请检查工作表是否受保护" : L"";
}

std::wstring DisplayModeDoneScript(std::wstring_view mode, const DisplayTally& tally,
                                   std::wstring_view message) {
  return Concat(L"if(window.onExcelDisplayModeDone)onExcelDisplayModeDone({ok:", BoolWord(message.empty()),
                L",mode:", JsonQuote(mode), Counts(tally), L",message:", JsonQuote(message), L"})");
}

std::wstring TargetStyleDoneScript(const DisplayTally& tally, std::wstring_view message) {
  return Concat(L"if(window.onTargetStyleDone)onTargetStyleDone({ok:", BoolWord(message.empty()),
                Counts(tally), L",skipped:", tally.skipped, L",message:", JsonQuote(message), L"})");
}

std::wstring BatchDoneScript(std::wstring_view action) {
  return Concat(L"if(window.onBatchDone)onBatchDone({action:", JsonQuote(action), L"})");
}

std::wstring DisplayModeLogLine(std::wstring_view mode, DisplayScope scope, const DisplayTally& tally) {
  return Concat(L"Excel displayMode=", mode, L" scope=", DisplayScopeName(scope), L" applied=", tally.applied,
                L" failed=", tally.failed, L"\r\n");
}

std::wstring RestyleLogLine(const DisplayTally& tally) {
  return Concat(L"RestyleTranslatedCells applied=", tally.applied, L" skipped=", tally.skipped, L" failed=",
                tally.failed, L"\r\n");
}

}  // namespace qv
