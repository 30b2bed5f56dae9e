#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// A sheet's name and the source texts of its units, kept together in large blocks: one allocation a text
/// would cost more than reading it from the host. Owned jointly by the units that point into it. One thread.
class SheetTexts {
 public:
  explicit SheetTexts(std::wstring_view sheetName) : sheetName_(sheetName) {}
  SheetTexts(const SheetTexts&) = delete;
  SheetTexts& operator=(const SheetTexts&) = delete;

  [[nodiscard]] const std::wstring& SheetName() const { return sheetName_; }

  /// A copy of the text that stays where it is as long as this object lives.
  [[nodiscard]] std::wstring_view Keep(std::wstring_view text);

 private:
  std::wstring sheetName_;
  std::vector<std::unique_ptr<wchar_t[]>> blocks_;
  /// What is left of the last block.
  wchar_t* free_ = nullptr;
  std::size_t freeUnits_ = 0;
};

}  // namespace qv
