#include "tools/row_preview.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "workbook/automation.h"

namespace qv {
namespace {

/// Selecting more areas than that takes hosts longer than the preview is worth; the first ones are selected.
constexpr std::size_t kMaxSelectedAreas = 1000;

/// A host without unions gets the first rows selected.
void SelectRows(IDispatch* application, IDispatch* sheet, std::span<const RowSpan> rows) {
  ComPtr<IDispatch> all;
  for (const std::wstring& address : JoinAddresses(rows.first(std::min(rows.size(), kMaxSelectedAreas)))) {
    const Variant argument(address);
    Variant found;
    if (FAILED(GetIndexedProperty(sheet, L"Range", {&argument, 1}, found))) break;
    const ComPtr<IDispatch> more = found.Object();
    if (all == nullptr) {
      all = more;
      continue;
    }
    const Variant both[] = {Variant(all.Get()), Variant(more.Get())};
    Variant joined;
    if (FAILED(InvokeByName(application, L"Union", both, &joined)) || joined.Object() == nullptr) break;
    all = joined.Object();
  }
  // A sheet whose protection lets nothing be selected still has its fills and its numbers.
  if (all != nullptr) static_cast<void>(InvokeByName(all.Get(), L"Select", {}, nullptr));
}

}  // namespace

void RowPreview::Show(IDispatch* application, IDispatch* sheet, const RangeGeometry& used,
                      std::span<const std::int32_t> rows, ComPtr<IDispatch> selection, IDispatch* window) {
  const std::vector<RowSpan> runs = JoinRows(rows);
  const bool canSelect = selection != nullptr;
  // What an earlier question left is put back before, so that it is not kept as the user's own.
  static_cast<void>(Restore());
  if (!view_ || view_->IsBack()) view_.emplace(std::move(selection), window);
  fills_.Paint(sheet, used, runs);
  if (canSelect) SelectRows(application, sheet, runs);
}

bool RowPreview::Restore() {
  const bool fillsBack = fills_.Restore();
  // Both are asked: neither waits for the other.
  const bool viewBack = !view_ || view_->Restore();
  return fillsBack && viewBack;
}

void RowPreview::Forget() {
  fills_.Forget();
  if (view_) view_->Forget();
}

}  // namespace qv
