#pragma once

#include <string>
#include <string_view>

#include "foundation/text.h"
#include "run_fixture.h"

namespace qv {

/// A sheet that was translated, ready to be switched.
class DisplayTest : public RunTest {
 protected:
  static constexpr const wchar_t* kDual = L"\"excelBilingualBelow\":true";

  void Translate(const std::wstring& members, std::wstring_view action = L"start") {
    pane->page.received.clear();
    pane->Start(members, action);
    ASSERT_TRUE(PumpUntilPageHas(L"onComplete("));
  }

  /// The arguments of the answer to a switch, or what went wrong.
  std::wstring Switch(std::wstring_view mode, std::wstring_view scope = {}) {
    pane->page.received.clear();
    pane->controller->Display().SetMode(mode, scope);
    return Answer(L"onExcelDisplayModeDone(");
  }

  /// What the page was told by the call; it must have been told once.
  std::wstring Answer(std::wstring_view call) {
    if (!PumpUntilPageHas(call)) return L"no answer";
    if (pane->page.Count(call) != 1) return L"several answers";
    const std::wstring script = pane->page.Find(call);
    const std::size_t begin = script.find(call) + call.size();
    return script.substr(begin, script.size() - begin - 1);
  }

  DisplayController& Display() { return pane->controller->Display(); }
  [[nodiscard]] const CellUnit& Unit(std::size_t index) const { return pane->session.units.at(index); }

  static std::wstring Done(std::wstring_view mode, int applied, int failed, std::wstring_view message = {}) {
    return Concat(L"{ok:", BoolWord(message.empty()), L",mode:\"", mode, L"\",applied:", applied, L",failed:",
                  failed, L",message:\"", message, L"\"}");
  }
};

inline constexpr std::wstring_view kSwitchFailed = L"切换显示模式失败，请检查工作表是否受保护";
inline constexpr std::wstring_view kNothingToRestore = L"没有可还原的单元格";

}  // namespace qv
