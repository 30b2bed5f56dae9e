#include "tools/row_highlight.h"

#include <string>

#include "foundation/guard.h"
#include "workbook/automation.h"
#include "workbook/cell_block.h"
#include "workbook/gone_object.h"

namespace qv {
namespace {

/// A light amber, as the host's number: red + 256 * green + 65536 * blue.
constexpr std::int32_t kHighlight = 0x9CEBFF;
/// The host's constants for "no fill" and for a fill without a pattern.
constexpr std::int32_t kNone = -4142;
constexpr std::int32_t kSolid = 1;

constexpr FillAnswer kMixedFill{FillState::kMixed, {}};
constexpr FillAnswer kFixedFill{FillState::kFixed, {}};
constexpr FillAnswer kUnknownFill{FillState::kUnknown, {}};

/// A property of several cells; VT_NULL is how hosts say that they differ.
struct SharedValue {
  bool isRead = false;
  Variant value;

  [[nodiscard]] bool IsMixed() const { return isRead && value.Type() == VT_NULL; }
};

SharedValue ReadShared(IDispatch* object, const wchar_t* property) {
  SharedValue shared;
  shared.isRead = SUCCEEDED(GetProperty(object, property, shared.value));
  return shared;
}

FillAnswer ThemeFill(IDispatch* interior, const SharedValue& theme) {
  const SharedValue tint = ReadShared(interior, L"TintAndShade");
  if (tint.IsMixed()) return kMixedFill;
  Variant number(tint.value);
  if (!tint.isRead || FAILED(VariantChangeType(&number.Get(), &number.Get(), 0, VT_R8))) return kFixedFill;
  return {FillState::kUniform, {CellFill::Kind::kTheme, IntegerOf(theme.value), number->dblVal}};
}

FillAnswer SolidFill(IDispatch* interior) {
  // Excel refuses the question about the theme for a colour that is not one of its theme's.
  const SharedValue theme = ReadShared(interior, L"ThemeColor");
  if (theme.IsMixed()) return kMixedFill;
  if (theme.isRead && IntegerOf(theme.value) > 0) return ThemeFill(interior, theme);
  const SharedValue color = ReadShared(interior, L"Color");
  if (color.IsMixed()) return kMixedFill;
  if (!color.isRead) return kUnknownFill;
  return {FillState::kUniform, {CellFill::Kind::kColor, IntegerOf(color.value), 0}};
}

FillAnswer FillOf(IDispatch* interior) {
  SharedValue pattern = ReadShared(interior, L"Pattern");
  if (!pattern.isRead) {
    // A host that knows no patterns tells at least where there is no fill.
    pattern = ReadShared(interior, L"ColorIndex");
    if (!pattern.isRead) return kUnknownFill;
    if (!pattern.IsMixed() && IntegerOf(pattern.value) != kNone) return SolidFill(interior);
  }
  if (pattern.IsMixed()) return kMixedFill;
  switch (IntegerOf(pattern.value)) {
    case kNone:
      return {FillState::kUniform, {}};
    case kSolid:
      return SolidFill(interior);
    default:
      return kFixedFill;
  }
}

FillAnswer AskFillOf(IDispatch* sheet, const RangeGeometry& block) {
  const ComPtr<IDispatch> cells = GetBlockRange(sheet, block);
  // Part of a merge has no fill of its own: the host may paint all of it.
  const SharedValue merged = ReadShared(cells.Get(), L"MergeCells");
  if (!merged.isRead) return kUnknownFill;
  if (merged.value.Type() != VT_BOOL) return kMixedFill;
  if (merged.value.IsTrue()) return kFixedFill;
  return FillOf(GetDispProperty(cells.Get(), L"Interior").Get());
}

HostAnswer PutFill(IDispatch* range, const CellFill& fill) {
  HostAnswer answer;
  const ComPtr<IDispatch> interior = GetDispProperty(range, L"Interior", &answer);
  if (interior == nullptr) return answer;
  switch (fill.kind) {
    case CellFill::Kind::kNone:
      return PutProperty(interior.Get(), L"ColorIndex", Variant(kNone));
    case CellFill::Kind::kColor:
      return PutProperty(interior.Get(), L"Color", Variant(fill.color));
    case CellFill::Kind::kTheme:
      answer = PutProperty(interior.Get(), L"ThemeColor", Variant(fill.color));
      return answer.Ok() ? PutProperty(interior.Get(), L"TintAndShade", Variant(fill.tint)) : answer;
  }
  return {E_UNEXPECTED, 0};
}

}  // namespace

RowHighlight::~RowHighlight() {
  if (painted_.empty()) return;
  Guard(L"RowHighlight", [this] { static_cast<void>(Restore()); });
}

void RowHighlight::Paint(IDispatch* sheet, const RangeGeometry& used, std::span<const RowSpan> rows) {
  // Paint that still shows would be taken for the fill to put back.
  if (!Restore()) return;
  const auto ask = [sheet](const RangeGeometry& block) { return AskFillOf(sheet, block); };
  const CellFill highlight{CellFill::Kind::kColor, kHighlight, 0};
  for (const FillGroup& group : SurveyFills(rows, used.firstCol, used.cols, ask)) {
    for (const std::wstring& address : JoinAddresses(group.blocks)) {
      const Variant argument(address);
      Variant found;
      if (FAILED(GetIndexedProperty(sheet, L"Range", {&argument, 1}, found))) return;
      const ComPtr<IDispatch> range = found.Object();
      // Noted before, so that nothing painted can be forgotten.
      painted_.push_back({range, group.fill});
      if (PutFill(range.Get(), highlight).Ok()) continue;
      // A host that refuses one block, such as of a protected sheet, refuses them all. It may have painted a
      // part of this one.
      if (!PutFill(range.Get(), group.fill).IsBusy()) DropLast(range.Get());
      return;
    }
  }
}

bool RowHighlight::Restore() {
  // What was painted last had the fills of earlier paint.
  while (!painted_.empty()) {
    const Painted piece = painted_.back();
    const HostAnswer answer = PutFill(piece.range.Get(), piece.former);
    if (!answer.Ok() && !IsObjectGone(answer)) return false;
    DropLast(piece.range.Get());
  }
  return true;
}

void RowHighlight::DropLast(IDispatch* range) {
  if (!painted_.empty() && painted_.back().range.Get() == range) painted_.pop_back();
}

}  // namespace qv
