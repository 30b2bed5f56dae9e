#include "workbook/unit_list.h"

#include <iterator>
#include <utility>

#include "foundation/text.h"

namespace qv {
namespace {

std::uint64_t CellKey(const CellUnit& unit) {
  return std::uint64_t{static_cast<std::uint32_t>(unit.row)} << 32 | static_cast<std::uint32_t>(unit.col);
}

std::wstring TooLongWarning(std::int32_t row, std::int32_t col) {
  return Concat(L"内容过长（超过 ", kMaxCellTextLength, L" 字符）：", A1Address(row, col),
                L"，请拆分后再翻译");
}

}  // namespace

void UnitList::AddText(std::int32_t row, std::int32_t col, std::wstring_view raw) {
  const std::optional<std::wstring_view> text = CollectableText(raw, isAlphabetic_);
  if (!text) return;
  if (text->size() > kMaxCellTextLength) {
    warnings_.push_back(TooLongWarning(row, col));
    return;
  }
  CellUnit& unit = units_.emplace_back();
  unit.row = row;
  unit.col = col;
  unit.sourceText = sheet_->Keep(*text);
  unit.sheet = sheet_;
}

void UnitList::Append(UnitList&& other) {
  if (units_.empty()) {
    units_ = std::move(other.units_);
  } else {
    if (cells_.empty()) {
      for (const CellUnit& unit : units_)
        cells_.insert(CellKey(unit));
    }
    for (CellUnit& unit : other.units_) {
      if (cells_.insert(CellKey(unit)).second) units_.push_back(std::move(unit));
    }
  }
  warnings_.insert(warnings_.end(), std::make_move_iterator(other.warnings_.begin()),
                   std::make_move_iterator(other.warnings_.end()));
}

}  // namespace qv
