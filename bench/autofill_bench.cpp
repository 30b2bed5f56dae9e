// What the scan of a form costs beyond fetching its values, up to the text that the page gets: on a range of
// this program's own, against a bare pass over the same values.

#include <oaidl.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "host_objects.h"
#include "measure.h"
#include "tools/autofill_cells.h"

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
constexpr std::int32_t kColumns = 400;

/// A form has one field a row among numbers and blanks; in the other sheet every second cell is a field and
/// its neighbour the label.
enum class Content { kForm, kFields };

Variant CellValue(Content content, std::int32_t row, std::int32_t col) {
  if (content == Content::kFields) {
    return col % 2 == 0 ? Variant(L"Label " + std::to_wstring(row * kColumns + col)) : Variant();
  }
  if (col == 1) return Variant(L"Label number " + std::to_wstring(row));
  return col == 0 || col % 3 == 0 ? Variant(row * 1.25 + col) : Variant();
}

/// A sheet that is not protected, without merged cells and hidden lines, whose used range answers `values`.
ComPtr<IDispatch> NewSheet(const LentValues& values, std::int32_t rows) {
  const ComPtr<IDispatch> rowAxis = NewObject({{L"Count", Always(Variant(rows))}});
  const ComPtr<IDispatch> colAxis = NewObject({{L"Count", Always(Variant(kColumns))}});
  const ComPtr<IDispatch> lines = NewObject({{L"Hidden", Always(Variant(false))}});
  const ComPtr<IDispatch> range = NewObject({
      {L"Value2", [&values] { return values.Lend(); }},
      {L"HasFormula", Always(Variant(false))},
      {L"MergeCells", Always(Variant(false))},
      {L"EntireRow", Always(Variant(lines.Get()))},
      {L"EntireColumn", Always(Variant(lines.Get()))},
      {L"Rows", Always(Variant(rowAxis.Get()))},
      {L"Columns", Always(Variant(colAxis.Get()))},
      {L"Row", Always(Variant(1))},
      {L"Column", Always(Variant(1))},
  });
  return NewObject({{L"UsedRange", Always(Variant(range.Get()))},
                    {L"Range", Always(Variant(range.Get()))},
                    {L"ProtectContents", Always(Variant(false))}});
}

struct Times {
  double scan;
  double bare;
};

/// Medians for one size; a scan that fails or finds another number of fields ends the program.
Times Measure(Content content, std::int32_t cells) {
  const std::int32_t rows = cells / kColumns;
  const std::int32_t fields = content == Content::kForm ? rows : cells / 2;
  std::vector<double> scan;
  std::vector<double> bare;
  for (int run = 0; run < kRuns; ++run) {
    Variant values = NewValues(rows, kColumns, [content](std::int32_t row, std::int32_t col) {
      return CellValue(content, row, col);
    });
    bare.push_back(Milliseconds([&] { BarePass(values, rows, kColumns); }));
    const LentValues lent(values);
    const ComPtr<IDispatch> sheet = NewSheet(lent, rows);
    AutofillCells found;
    std::wstring result;
    scan.push_back(Milliseconds([&] {
      found = CollectAutofillCells(sheet.Get());
      result = AutofillScanResult(found.fields, found.usedRange, found.holdsData);
    }));
    if (found.fields.size() != static_cast<std::size_t>(fields) || result.empty()) {
      std::fprintf(stderr, "%zu fields were found\n", found.fields.size());
      std::exit(1);
    }
  }
  return {Median(scan), Median(bare)};
}

void Report(const std::string& name, Content content) {
  const Times small = Measure(content, 20000);
  const Times large = Measure(content, 200000);
  Row(name + " 20000 cells", small.scan, "ms");
  Row(name + " 200000 cells", large.scan, "ms");
  Row(name + " bare pass of 200000 cells", large.bare, "ms");
  Row(name + " 200000 cells / bare pass", large.scan / large.bare, "x");
  Row(name + " growth for ten times the cells", large.scan / small.scan, "x");
}

}  // namespace
}  // namespace qv

int main() {
  qv::Report("scan form, one field a row", qv::Content::kForm);
  qv::Report("scan form, every second cell a field", qv::Content::kFields);
  qv::bench::End();
  return 0;
}
