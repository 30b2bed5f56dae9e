// What collecting a sheet costs beyond fetching its values: the collector on a range of this program's own,
// against a bare pass of one SafeArrayGetElement and VariantClear per cell over the same values.

#include <oaidl.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/com_object.h"
#include "measure.h"
#include "workbook/collector.h"

namespace qv {

namespace {

using bench::Median;
using bench::Milliseconds;
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

/// A worksheet's values in the shape in which a host answers "Value2".
Variant NewValues(Content content, std::int32_t rows) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows), 1}, {kColumns, 1}};
  Variant values;
  values.Get().parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  values.Get().vt = VT_ARRAY | VT_VARIANT;
  for (LONG row = 1; row <= rows; ++row) {
    for (LONG col = 1; col <= kColumns; ++col) {
      LONG position[] = {row, col};
      Variant value = CellValue(content, row, col - 1);
      static_cast<void>(SafeArrayPutElement(values->parray, position, &value.Get()));
    }
  }
  return values;
}

/// Lends the values' array as a host would give it, without a copy: while it is locked its receiver cannot
/// free it. Making and freeing the array are the host's work and count in neither pass.
class LentValues {
 public:
  explicit LentValues(const Variant& values) : array_(values->parray) { SafeArrayLock(array_); }
  LentValues(const LentValues&) = delete;
  LentValues& operator=(const LentValues&) = delete;
  ~LentValues() { SafeArrayUnlock(array_); }

  [[nodiscard]] Variant Lend() const {
    Variant value;
    value.Get().parray = array_;
    value.Get().vt = VT_ARRAY | VT_VARIANT;
    return value;
  }

 private:
  SAFEARRAY* array_;
};

/// An object that answers a few properties by name.
class BenchObject final : public ComObject<IDispatch> {
 public:
  using Getter = std::function<Variant()>;

  explicit BenchObject(std::vector<std::pair<std::wstring, Getter>> properties)
      : properties_(std::move(properties)) {}

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    const auto found =
        std::ranges::find(properties_, std::wstring(names[0]), &std::pair<std::wstring, Getter>::first);
    if (found == properties_.end()) return DISP_E_UNKNOWNNAME;
    *id = static_cast<DISPID>(found - properties_.begin()) + 1;
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                      UINT*) override {
    *result = properties_.at(static_cast<std::size_t>(id) - 1).second().Detach();
    return S_OK;
  }

 private:
  std::vector<std::pair<std::wstring, Getter>> properties_;
};

ComPtr<IDispatch> NewObject(std::vector<std::pair<std::wstring, BenchObject::Getter>> properties) {
  return TakeReference<IDispatch>(new BenchObject(std::move(properties)));
}

BenchObject::Getter Always(const Variant& value) {
  return [value] { return value; };
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

void BarePass(const Variant& values, std::int32_t rows) {
  for (LONG row = 1; row <= rows; ++row) {
    for (LONG col = 1; col <= kColumns; ++col) {
      LONG position[] = {row, col};
      VARIANT element;
      VariantInit(&element);
      static_cast<void>(SafeArrayGetElement(values->parray, position, &element));
      static_cast<void>(VariantClear(&element));
    }
  }
}

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
    Variant values = NewValues(content, rows);
    bare.push_back(Milliseconds([&] { BarePass(values, rows); }));
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
