// What switching the display of translated cells costs, and how long it keeps the host's UI thread at a time:
// the display controller on the memory engine, without service and page.

#include <ole2.h>
#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "engines/memory/memory_engine.h"
#include "foundation/text.h"
#include "measure.h"
#include "ole_program.h"
#include "pane_window.h"
#include "translation/display_controller.h"
#include "workbook/collector.h"

namespace qv::bench {
namespace {

constexpr int kColumns = 10;
constexpr double kSmallCells = 1'000;
constexpr double kLargeCells = 10'000;

/// A sheet of so many texts, each with a translation that was not written yet.
struct TranslatedSheet {
  explicit TranslatedSheet(int cells) {
    engine.AddWorkbook(L"Book.xlsx");
    for (int cell = 0; cell < cells; ++cell) {
      const devhost::memory::CellValue text = L"Cell text number " + std::to_wstring(cell);
      engine.Sheet().SetEntry(cell / kColumns + 1, cell % kColumns + 1, {text, L"", false, L""});
    }
    target.SetApplication(engine.Application());
    Require(target.RefreshPin(), "no workbook to pin");
    CollectResult result;
    Collector collector(target, page, *pane);
    Require(collector.CollectUsedRangeCells(L"", 1, result), "nothing was collected");
    Require(result.units.size() == static_cast<std::size_t>(cells), "not every text was collected");
    session.Replace(std::move(result.units), {});
    session.layout = Layout::kDual;
    session.workbookKey = target.WorkbookKey();
    session.pinSerial = target.PinSerial();
    for (CellUnit& unit : session.units)
      unit.translation = Concat(L"Traducción de ", unit.sourceText);
  }
  TranslatedSheet(const TranslatedSheet&) = delete;
  TranslatedSheet& operator=(const TranslatedSheet&) = delete;
  ~TranslatedSheet() { display->Stop(); }

  devhost::MemoryEngine engine;
  std::shared_ptr<PaneContext> pane = std::make_shared<PaneContext>(1);
  TaskWindow window{*pane};
  AnswerPage page;
  TargetContext target;
  TranslationSession session;
  std::shared_ptr<DisplayController> display = std::make_shared<DisplayController>(
      pane, page, target, session, [] {}, Patience{});
};

/// What one request took.
struct Cost {
  double milliseconds = 0;
  double callsPerCell = 0;
  /// The longest time between two looks at the message queue, in which a host cannot paint.
  double longestSlice = 0;
};

template <typename Request>
Cost Measure(TranslatedSheet& sheet, Request&& request, std::wstring_view expected) {
  sheet.page.answer.clear();
  sheet.engine.ResetCounters();
  Cost cost;
  const auto slice = [&cost](auto&& work) {
    cost.longestSlice = std::max(cost.longestSlice, Milliseconds(work));
  };
  cost.milliseconds = Milliseconds([&] {
    slice([&] { request(*sheet.display); });
    MSG message;
    while (sheet.page.answer.empty() && GetMessageW(&message, nullptr, 0, 0) > 0) {
      slice([&message] { DispatchMessageW(&message); });
    }
  });
  Require(Contains(sheet.page.answer, expected), "not every cell was changed");
  cost.callsPerCell =
      static_cast<double>(sheet.engine.Calls()) / static_cast<double>(sheet.session.units.size());
  return cost;
}

Cost MeasureMode(TranslatedSheet& sheet, std::wstring_view mode) {
  const std::wstring expected = Concat(L"applied:", sheet.session.units.size(), L",failed:0");
  return Measure(
      sheet, [mode](DisplayController& display) { display.SetMode(mode, L"session"); }, expected);
}

/// The switches that a user makes one after the other, the cells being written by the first.
struct Switches {
  explicit Switches(double cells) {
    TranslatedSheet sheet(static_cast<int>(cells));
    first = MeasureMode(sheet, L"dual");
    restored = MeasureMode(sheet, L"original");
    target = MeasureMode(sheet, L"target");
    dual = MeasureMode(sheet, L"dual");
  }

  Cost first;
  Cost restored;
  Cost target;
  Cost dual;
};

void Report(const std::string& name, const Cost& small, const Cost& large) {
  Row(name + " 10000 cells", large.milliseconds, "ms");
  Row(name + " growth for ten times the cells", large.milliseconds / small.milliseconds, "x");
  Row(name + " host calls per cell", large.callsPerCell, "calls");
  Row(name + " longest time without painting", large.longestSlice, "ms");
}

void Run() {
  const Switches small(kSmallCells);
  const Switches large(kLargeCells);
  Report("write dual", small.first, large.first);
  Report("restore", small.restored, large.restored);
  Report("original to target", small.target, large.target);
  Report("target to dual", small.dual, large.dual);
}

}  // namespace
}  // namespace qv::bench

int main() {
  return qv::bench::RunOleProgram(qv::bench::Run);
}
