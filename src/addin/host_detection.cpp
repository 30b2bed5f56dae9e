#include "addin/host_detection.h"

#include <algorithm>
#include <array>

#include "foundation/text.h"

namespace qv {

bool IsWpsApplication(std::wstring_view name, std::wstring_view path) {
  constexpr std::array<std::wstring_view, 4> kMarks = {L"WPS", L"Kingsoft", L"金山", L"ET"};
  return std::any_of(kMarks.begin(), kMarks.end(),
                     [&](std::wstring_view mark) { return Contains(name, mark) || Contains(path, mark); });
}

}  // namespace qv
