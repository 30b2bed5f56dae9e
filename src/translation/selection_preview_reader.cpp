#include "translation/selection_preview_reader.h"

#include <optional>
#include <string>
#include <vector>

#include "foundation/guard.h"
#include "foundation/variant.h"
#include "translation/selection_preview.h"
#include "workbook/automation.h"
#include "workbook/collector.h"
#include "workbook/selection_areas.h"
#include "workbook/value_block.h"

namespace qv {
namespace {

bool IsBusyAt(IDispatch* object, const wchar_t* property) {
  Variant ignored;
  HostAnswer answer;
  answer.hr = GetProperty(object, property, ignored, &answer.exceptionCode);
  return answer.IsBusy();
}

void AppendTextOf(const VARIANT& value, std::wstring& text) {
  if (value.vt == VT_BSTR) AppendQuickText(text, {value.bstrVal, SysStringLen(value.bstrVal)});
}

/// The texts of one rectangle, formulas' results included: here they are only read.
void AppendTextsOf(IDispatch* range, const RangeGeometry& geometry, std::wstring& text) {
  Variant values;
  if (FAILED(GetProperty(range, L"Value2", values))) return;
  const std::optional<ValueBlock> block = ValueBlock::Of(values);
  if (!block) return AppendTextOf(values.Get(), text);
  Variant held;
  for (std::int32_t row = 1; row <= geometry.rows; ++row) {
    for (std::int32_t col = 1; col <= geometry.cols; ++col) {
      const VARIANT* const value = block->Read(row, col, held);
      if (value != nullptr) AppendTextOf(*value, text);
    }
  }
}

std::wstring QuickTextOf(const ComPtr<IDispatch>& selection, const std::vector<RangeGeometry>& areas) {
  std::wstring text;
  const SelectionRanges ranges(selection);
  std::int32_t number = 0;
  for (const RangeGeometry& area : areas)
    AppendTextsOf(ranges.At(++number).Get(), area, text);
  return text;
}

/// Sheets of the same names in another workbook are not meant. A pane without a pin of its own may have
/// followed the user to one.
bool IsSessionsWorkbook(IDispatch* selection, const TargetContext& target,
                        const TranslationSession& session) {
  if (session.units.empty() || target.PinSerial() == session.pinSerial) return true;
  const ComPtr<IDispatch> sheet = GetDispProperty(selection, L"Worksheet");
  const ComPtr<IDispatch> workbook = GetDispProperty(sheet.Get(), L"Parent");
  // The same two names as of the target's key.
  std::wstring key = GetStringProperty(workbook.Get(), L"FullName");
  if (key.empty()) key = GetStringProperty(workbook.Get(), L"Name");
  return key.empty() || key == session.workbookKey;
}

SelectionPreview PreviewOf(const CollectResult& collected) {
  SelectionPreview preview;
  preview.fragments = collected.units.size();
  for (const CellUnit& unit : collected.units)
    preview.chars += unit.WorkText().size();
  return preview;
}

/// The script for the page, or nothing while the host is busy.
std::optional<std::wstring> ReadPreview(const TargetContext& target, const TranslationSession& session,
                                        PaneContext& pane, PanelOutput& output) {
  HostAnswer answer;
  const ComPtr<IDispatch> selection = target.GetTargetSelectionDrv(&answer);
  if (answer.IsBusy()) return std::nullopt;
  CollectResult collected;
  if (selection == nullptr || !Collector(target, output, pane).CollectSelectionCells(0, collected)) {
    // The collection does not tell why it failed; a host that is busy still says so.
    if (IsBusyAt(selection.Get(), L"Address")) return std::nullopt;
    return SelectionPreviewErrorScript(kSelectionUnreadableError);
  }
  SelectionPreview preview = PreviewOf(collected);
  if (IsSessionsWorkbook(selection.Get(), target, session))
    preview.written = CountWritten(session.units, collected.sheetName, collected.areas);
  if (collected.cells <= kMaxQuickTextCells) preview.quickText = QuickTextOf(selection, collected.areas);
  preview.rangeAddress = GetStringProperty(selection.Get(), L"Address");
  return SelectionPreviewScript(preview);
}

}  // namespace

void SelectionPreviewReader::Push() {
  const std::uint64_t push = ++pushes_;
  const std::uint64_t starts = session_.starts;
  std::optional<std::wstring> script;
  try {
    script = ReadPreview(target_, session_, pane_, output_);
  } catch (...) {
    static_cast<void>(HandleCurrentException(L"SelectionPreview"));
    script = SelectionPreviewErrorScript(kSelectionFailedError);
  }
  // The host may have closed the pane while it was asked.
  if (pane_.IsClosing() || push != pushes_ || starts != session_.starts) return;
  if (script) output_.RunPanelScript(*script);
}

}  // namespace qv
