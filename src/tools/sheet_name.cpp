#include "tools/sheet_name.h"

#include <algorithm>

#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::wstring_view kForbidden = L":\\/?*[]";
constexpr std::wstring_view kStripped = L" '";

bool IsHighSurrogate(wchar_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

/// At most `length` units, without the first half of a pair at the end.
std::wstring_view Cut(std::wstring_view text, std::size_t length) {
  if (text.size() <= length) return text;
  text = text.substr(0, length);
  if (!text.empty() && IsHighSurrogate(text.back())) text.remove_suffix(1);
  return text;
}

std::wstring_view Strip(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(kStripped);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kStripped) - first + 1);
}

}  // namespace

std::wstring CleanSheetName(std::wstring_view text) {
  std::wstring allowed;
  std::ranges::copy_if(text, std::back_inserter(allowed),
                       [](wchar_t unit) { return kForbidden.find(unit) == std::wstring_view::npos; });
  std::wstring_view name = Cut(Strip(allowed), kMaxSheetName);
  // The cut may have laid an apostrophe bare, which no host takes at the end.
  while (name.ends_with(L'\''))
    name.remove_suffix(1);
  return name.empty() ? L"Sheet" : std::wstring(name);
}

std::wstring NumberedSheetName(std::wstring_view name, int number) {
  const std::wstring suffix = Concat(L" (", number, L')');
  return Concat(Cut(name, kMaxSheetName - suffix.size()), suffix);
}

}  // namespace qv
