#pragma once

#include <string>

namespace qv {

/// The first file below a folder that is in use, such as a program that runs; empty when none is, or there is
/// no such folder.
[[nodiscard]] std::wstring FileInUseBelow(const std::wstring& directory);

/// Deletes a folder with all that is in it, write-protected files too; of a link to another folder only the
/// link. What could not be deleted, or empty when the folder is gone.
[[nodiscard]] std::wstring DeleteFolder(const std::wstring& directory);

}  // namespace qv
