// What switching the display of translated cells costs, and how long it keeps the host's UI thread at a time:
// the display controller on the memory engine, without service and page.

#include <ole2.h>
#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "engines/memory/memory_engine.h"
#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "foundation/text.h"
#include "measure.h"
#include "ole_program.h"
#include "translation/display_controller.h"
#include "workbook/collector.h"

namespace qv::bench {
namespace {

constexpr int kColumns = 10;
constexpr double kSmallCells = 1'000;
constexpr double kLargeCells = 10'000;
constexpr wchar_t kWindowClass[] = L"QvDisplayBenchPane";

/// Hears when a request is answered.
class AnswerPage final : public PanelOutput {
 public:
  void RunPanelScript(const std::wstring& script) override { answer = script; }
  void PostPanelJson(const std::wstring&) override {}
  void PostPanelScript(const std::wstring& script) override { RunPanelScript(script); }

  std::wstring answer;
};

LRESULT CALLBACK PaneProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* context = reinterpret_cast<PaneContext*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message != kUiTaskMessage || context == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  context->Tasks().OnMessage(lParam);
  return 0;
}

/// The window to which a pane's tasks are posted.
class TaskWindow {
 public:
  explicit TaskWindow(PaneContext& context) : context_(context) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &PaneProcedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kWindowClass;
    RegisterClassW(&windowClass);
    window_ = CreateWindowExW(0, kWindowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                              windowClass.hInstance, nullptr);
    Require(window_ != nullptr, "no window for the tasks");
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&context));
    context.SetWindows(window_, nullptr);
    context.Tasks().Open(window_);
  }
  TaskWindow(const TaskWindow&) = delete;
  TaskWindow& operator=(const TaskWindow&) = delete;
  ~TaskWindow() {
    context_.Tasks().Close();
    DestroyWindow(window_);
  }

 private:
  PaneContext& context_;
  HWND window_ = nullptr;
};

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
