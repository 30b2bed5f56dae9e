// What the removal of 5 000 blank rows among 50 000 costs on the memory engine, and what of it is the
// add-in's own.

#include <cstdint>
#include <string>

#include "engines/memory/memory_engine.h"
#include "measure.h"
#include "tools/delete_blank_rows.h"

namespace {

using qv::bench::Milliseconds;
using qv::bench::Row;

constexpr long kRows = 50000;
/// Every tenth row is blank.
constexpr long kStep = 10;

class Stopwatch {
 public:
  using Clock = std::chrono::steady_clock;

  void Start() { started_ = Clock::now(); }
  void Stop() { spent_ += std::chrono::duration<double, std::milli>(Clock::now() - started_).count(); }
  [[nodiscard]] double Spent() const { return spent_; }

 private:
  Clock::time_point started_;
  double spent_ = 0;
};

void Measure() {
  qv::devhost::MemoryEngine engine;
  engine.AddWorkbook(L"Book.xlsx");
  qv::devhost::memory::Sheet& sheet = engine.Sheet();
  for (long row = 1; row < kRows; ++row) {
    if (row % kStep != 0) sheet.SetEntry(row, 1, {static_cast<double>(row), {}, false, {}});
  }
  sheet.SetEntry(kRows + 1, 1, {1.0, {}, false, {}});
  const qv::ExcelWindow window = qv::ExcelWindow::ResolveForInvocation(engine.Application(), nullptr);
  Stopwatch inHost;
  engine.Faults().OnCall("Range.Delete", [&] { inHost.Start(); });
  engine.Faults().OnCall(
      "Range.Delete", [&] { inHost.Stop(); }, false);
  qv::RowPreview preview;
  Stopwatch shown;
  std::uint64_t callsBefore = 0;
  engine.ResetCounters();
  shown.Start();
  qv::BlankRowResult result;
  const double all = Milliseconds([&] {
    result = qv::DeleteBlankRows(engine.Application(), window, preview, [&](std::int32_t) {
      shown.Stop();
      callsBefore = engine.Calls();
      return true;
    });
  });
  const double deleting = all - shown.Spent();
  const std::string rows = std::to_string(result.deleted) + " of " + std::to_string(kRows) + " rows";
  Row("blank rows: find and show " + rows, shown.Spent(), "ms");
  Row("blank rows: host calls until the question", static_cast<double>(callsBefore), "calls");
  Row("blank rows: delete " + rows + ", without the engine's deletes", deleting - inHost.Spent(), "ms");
  Row("blank rows: host calls a deleted row",
      static_cast<double>(engine.Calls() - callsBefore) / static_cast<double>(result.deleted), "calls");
}

}  // namespace

int main() {
  Measure();
  qv::bench::End();
  return 0;
}
