#include "panel/fonts.h"

#include <windows.h>

#include <algorithm>

#include "foundation/guard.h"

namespace qv {
namespace {

/// The screen's device context.
class ScreenDc {
 public:
  ScreenDc() = default;
  ScreenDc(const ScreenDc&) = delete;
  ScreenDc& operator=(const ScreenDc&) = delete;
  ~ScreenDc() { ReleaseDC(nullptr, dc_); }
  [[nodiscard]] HDC Get() const { return dc_; }

 private:
  HDC dc_ = GetDC(nullptr);
};

int CALLBACK AddFamily(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM families) noexcept {
  Guard(L"AddFamily", [&] {
    if (font->lfFaceName[0] == L'@' || font->lfFaceName[0] == L'\0') return;
    reinterpret_cast<std::vector<std::wstring>*>(families)->emplace_back(font->lfFaceName);
  });
  return 1;
}

int Compare(const std::wstring& left, const std::wstring& right) {
  return CompareStringOrdinal(left.c_str(), static_cast<int>(left.size()), right.c_str(),
                              static_cast<int>(right.size()), TRUE);
}

}  // namespace

std::vector<std::wstring> InstalledFontFamilies() {
  std::vector<std::wstring> families;
  LOGFONTW any{};
  any.lfCharSet = DEFAULT_CHARSET;
  const ScreenDc screen;
  EnumFontFamiliesExW(screen.Get(), &any, AddFamily, reinterpret_cast<LPARAM>(&families), 0);

  // A family is reported once for every script that it supports.
  std::sort(families.begin(), families.end(),
            [](const auto& left, const auto& right) { return Compare(left, right) == CSTR_LESS_THAN; });
  families.erase(
      std::unique(families.begin(), families.end(),
                  [](const auto& left, const auto& right) { return Compare(left, right) == CSTR_EQUAL; }),
      families.end());
  return families;
}

}  // namespace qv
