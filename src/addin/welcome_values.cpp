#include "addin/welcome_values.h"

#include "foundation/text.h"

namespace qv {
namespace {

struct HostValue {
  std::wstring_view host;
  const wchar_t* value;
};

constexpr HostValue kValues[] = {
    {L"excel", L"WelcomeShown_excel"},
    {L"wps", L"WelcomeShown_wps"},
    {L"wps-excel", L"WelcomeShown_et"},
    {L"et", L"WelcomeShown_et"},
};

}  // namespace

const wchar_t* WelcomeValueOfHost(std::wstring_view host) {
  for (const HostValue& row : kValues) {
    if (EqualsIgnoreAsciiCase(row.host, host)) return row.value;
  }
  return L"WelcomeShown_word";
}

bool IsInFront(const HostWindowFacts& facts) {
  return facts.isWindow && facts.isVisible && !facts.isMinimised && facts.hasForeground &&
         facts.sharesThread && facts.isForegroundRoot;
}

}  // namespace qv
