#include "foundation/module.h"

#include <array>

// Placed by the linker at the start of the module's image.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace qv {

HINSTANCE ThisModule() {
  return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

std::wstring ThisModulePath() {
  std::array<wchar_t, MAX_PATH> path{};
  const DWORD length = GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
  // A path that was cut off has the buffer's length.
  return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
}

}  // namespace qv
