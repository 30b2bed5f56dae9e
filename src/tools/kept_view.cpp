#include "tools/kept_view.h"

#include <utility>

#include "foundation/guard.h"
#include "workbook/automation.h"

namespace qv {
namespace {

constexpr const wchar_t* kActiveCell = L"ActiveCell";
constexpr const wchar_t* kScrollRow = L"ScrollRow";
constexpr const wchar_t* kScrollColumn = L"ScrollColumn";

/// Only a window that was moved is moved back: a put may end the host's copy mode.
void ScrollBack(IDispatch* window, const wchar_t* property, const Variant& former) {
  const std::int32_t line = IntegerOf(former);
  if (line > 0 && GetIntProperty(window, property) != line)
    static_cast<void>(PutDispProperty(window, property, &former));
}

bool IsSameCell(IDispatch* left, IDispatch* right) {
  const auto equal = [&](const wchar_t* name) {
    return GetIntProperty(left, name) == GetIntProperty(right, name);
  };
  return equal(L"Row") && equal(L"Column");
}

/// Only where the selection did not bring it back by itself.
void ActivateAgain(IDispatch* window, IDispatch* cell) {
  if (cell == nullptr || IsSameCell(GetDispProperty(window, kActiveCell).Get(), cell)) return;
  static_cast<void>(InvokeByName(cell, L"Activate", {}, nullptr));
}

}  // namespace

KeptView::KeptView(ComPtr<IDispatch> selection, IDispatch* window)
    : selection_(std::move(selection)), window_(window) {
  if (GetIntProperty(selection_.Get(), L"Row") > 0) activeCell_ = GetDispProperty(window, kActiveCell);
  if (FAILED(GetProperty(window, kScrollRow, scrollRow_))) scrollRow_ = {};
  if (FAILED(GetProperty(window, kScrollColumn, scrollColumn_))) scrollColumn_ = {};
}

KeptView::~KeptView() {
  Guard(L"KeptView", [this] { static_cast<void>(Restore()); });
}

bool KeptView::Restore() {
  // References of its own: the host may run messages inside a call, and with them a `Forget`.
  const ComPtr<IDispatch> window = window_;
  const ComPtr<IDispatch> activeCell = activeCell_;
  if (const ComPtr<IDispatch> selection = selection_) {
    HostAnswer answer;
    answer.hr = InvokeByName(selection.Get(), L"Select", {}, nullptr, &answer.exceptionCode);
    if (answer.IsBusy()) return false;
    ActivateAgain(window.Get(), activeCell.Get());
  }
  if (window != nullptr) {
    ScrollBack(window.Get(), kScrollRow, scrollRow_);
    ScrollBack(window.Get(), kScrollColumn, scrollColumn_);
  }
  Forget();
  return true;
}

void KeptView::Forget() {
  selection_.Reset();
  window_.Reset();
  activeCell_.Reset();
}

}  // namespace qv
