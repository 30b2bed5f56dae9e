// What collecting a sheet costs beyond fetching its values: the collector on a range of this program's own,
// against a bare pass of one SafeArrayGetElement and VariantClear per cell over the same values.

#include <oaidl.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "host_objects.h"
#include "measure.h"
#include "workbook/collector.h"

namespace qv {

namespace {

using bench::Always;
using bench::BarePass;
using bench::LentValues;
using bench::Median;
using bench::Milliseconds;
using bench::NewObject;
using bench::NewValues;
using bench::Row;

constexpr int kRuns = 9;
constexpr std::int32_t kColumns = 10;

/// A ledger has two columns of texts among eight of numbers, dates and blanks; the other sheet has nothing
/// but texts.
enum class Content { kLedger, kTexts };

Variant CellValue(Content content, std::int32_t row, std::int32_t col) {
  const std::wstring number = std::to_wstring(row * kColumns + col);
  if (content == Content::kTexts) return Variant(L"Cell text number " + number);
  switch (col) {
    case 0:
      return Variant(L"Item " + number);
    case 1:
      return Variant(L"A remark as people write them, " + number);
    case 2:
      return Variant();
    default:
      return Variant(row * 1.25 + col);
  }
}

/// An application whose active sheet's used range answers `values`.
ComPtr<IDispatch> NewApplication(const LentValues& values, std::int32_t rows) {
  const ComPtr<IDispatch> rowAxis = NewObject({{L"Count", Always(Variant(rows))}});
  const ComPtr<IDispatch> colAxis = NewObject({{L"Count", Always(Variant(kColumns))}});
  const ComPtr<IDispatch> range = NewObject({
      {L"Value2", [&values] { return values.Lend(); }},
      {L"HasFormula", Always(Variant(false))},
      {L"MergeCells", Always(Variant(false))},
      {L"Rows", Always(Variant(rowAxis.Get()))},
      {L"Columns", Always(Variant(colAxis.Get()))},
      {L"Row", Always(Variant(1))},
      {L"Column", Always(Variant(1))},
  });
  const ComPtr<IDispatch> sheet =
      NewObject({{L"UsedRange", Always(Variant(range.Get()))}, {L"Name", Always(Variant(L"Sheet1"))}});
  return NewObject({{L"ActiveSheet", Always(Variant(sheet.Get()))}});
}

class NoPanel final : public PanelOutput {
 public:
  void RunPanelScript(const std::wstring&) override {}
  void PostPanelJson(const std::wstring&) override {}
  void PostPanelScript(const std::wstring&) override {}
};

struct Times {
  double collect;
  double bare;
};

/// Medians for one size; a collection that fails or finds nothing ends the program.
Times Measure(Content content, std::int32_t cells) {
  const std::int32_t rows = cells / kColumns;
  NoPanel panel;
  PaneContext pane(1);
  std::vector<double> collect;
  std::vector<double> bare;
  for (int run = 0; run < kRuns; ++run) {
    Variant values = NewValues(rows, kColumns, [content](std::int32_t row, std::int32_t col) {
      return CellValue(content, row, col);
    });
    bare.push_back(Milliseconds([&] { BarePass(values, rows, kColumns); }));
    const LentValues lent(values);
    TargetContext target;
    target.SetApplication(NewApplication(lent, rows));
    CollectResult result;
    bool collected = false;
    collect.push_back(Milliseconds([&] {
      Collector collector(target, panel, pane);
      collected = collector.CollectUsedRangeCells(L"", 1, result);
    }));
    if (!collected || result.units.empty()) {
      std::fputs("nothing was collected\n", stderr);
      std::exit(1);
    }
  }
  return {Median(collect), Median(bare)};
}

void Report(const std::string& name, Content content) {
  const Times small = Measure(content, 20000);
  const Times large = Measure(content, 200000);
  Row(name + " 20000 cells", small.collect, "ms");
  Row(name + " 200000 cells", large.collect, "ms");
  Row(name + " bare pass of 200000 cells", large.bare, "ms");
  Row(name + " 20000 cells / bare pass", small.collect / small.bare, "x");
  Row(name + " 200000 cells / bare pass", large.collect / large.bare, "x");
  Row(name + " growth for ten times the cells", large.collect / small.collect, "x");
}

}  // namespace
}  // namespace qv

int main() {
  qv::Report("collect ledger", qv::Content::kLedger);
  qv::Report("collect texts", qv::Content::kTexts);
  qv::bench::End();
  return 0;
}
