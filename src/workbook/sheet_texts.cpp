#include "workbook/sheet_texts.h"

#include <algorithm>

namespace qv {
namespace {

/// UTF-16 units of a block; a longer text gets a block of its own.
constexpr std::size_t kBlockUnits = 32768;

}  // namespace

std::wstring_view SheetTexts::Keep(std::wstring_view text) {
  if (text.size() > freeUnits_) {
    const std::size_t units = std::max(kBlockUnits, text.size());
    blocks_.push_back(std::make_unique_for_overwrite<wchar_t[]>(units));
    free_ = blocks_.back().get();
    freeUnits_ = units;
  }
  wchar_t* const kept = free_;
  std::ranges::copy(text, kept);
  free_ += text.size();
  freeUnits_ -= text.size();
  return {kept, text.size()};
}

}  // namespace qv
