#include "tools/sheet_choice.h"

#include <utility>

#include "tools/whole_number.h"

namespace qv {

SheetChoice ParseSheetChoice(const ToolArguments& arguments) {
  if (auto own = TextOfValue(arguments.Value(L"name")); own && !own->empty()) {
    return {std::move(*own), std::nullopt};
  }
  const std::wstring_view own = arguments.Value(L"index");
  if (!own.empty() && own != L"null") return {{}, WholeNumberOfValue(own).value_or(0)};
  if (std::wstring name = arguments.Text(L"name"); !name.empty()) return {std::move(name), std::nullopt};
  const std::int32_t index = arguments.Integer(L"index");
  return {{}, index != 0 ? std::optional(index) : std::nullopt};
}

}  // namespace qv
