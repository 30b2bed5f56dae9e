#pragma once

#include <string>
#include <string_view>

namespace qv {

/// Key of a pane without a workbook.
inline constexpr std::wstring_view kNoDocumentKey = L"_no_doc";

/// Lower-case form of one UTF-16 unit. The C library's own function knows only ASCII letters in its default
/// locale, so the platform supplies it.
using LowerCaseUnit = wchar_t (*)(wchar_t unit);

/// Key under which per-document data of a workbook is kept, from its full name: 16 hexadecimal digits, the
/// same for names that differ only in case; "_unsaved" for an empty name.
[[nodiscard]] std::wstring DocKey(std::wstring_view fullName, LowerCaseUnit lower);

}  // namespace qv
