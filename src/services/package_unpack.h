#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace qv {

/// Unpacks a zip package with the system's "tar.exe", or the one on the search path, into a folder that
/// exists. False when there is none or it failed; its output is logged. Worker thread.
[[nodiscard]] bool ExtractWithTar(const std::wstring& package, const std::wstring& directory);

/// The same with the shell's copy operation, which can return before it is done: waits until `locate` gives
/// a path whose file has stopped growing. False when the shell cannot open the package, or the patience is at
/// its end. Worker thread.
[[nodiscard]] bool ExtractWithShell(const std::wstring& package, const std::wstring& directory,
                                    const std::function<std::wstring()>& locate,
                                    std::chrono::milliseconds patience = std::chrono::minutes(2));

}  // namespace qv
