#pragma once

#include <string>

namespace qv::devhost::calc {

/// A path of the Wine prefix as the office, a program of the system below, knows it. Other paths stay as they
/// are.
[[nodiscard]] std::string OfficePath(const std::wstring& path);

}  // namespace qv::devhost::calc
