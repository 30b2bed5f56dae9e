#include "tools/kept_view.h"

#include <utility>

#include "foundation/guard.h"
#include "workbook/automation.h"

namespace qv {
namespace {

constexpr const wchar_t* kScrollRow = L"ScrollRow";
constexpr const wchar_t* kScrollColumn = L"ScrollColumn";

/// Only a window that was moved is moved back: a put may end the host's copy mode.
void ScrollBack(IDispatch* window, const wchar_t* property, const Variant& former) {
  const std::int32_t line = IntegerOf(former);
  if (line > 0 && GetIntProperty(window, property) != line)
    static_cast<void>(PutDispProperty(window, property, &former));
}

}  // namespace

KeptView::KeptView(ComPtr<IDispatch> selection, IDispatch* window)
    : selection_(std::move(selection)), window_(window) {
  if (FAILED(GetProperty(window, kScrollRow, scrollRow_))) scrollRow_ = {};
  if (FAILED(GetProperty(window, kScrollColumn, scrollColumn_))) scrollColumn_ = {};
}

KeptView::~KeptView() {
  Guard(L"KeptView", [this] { Restore(); });
}

void KeptView::Restore() {
  const ComPtr<IDispatch> selection = std::exchange(selection_, nullptr);
  const ComPtr<IDispatch> window = std::exchange(window_, nullptr);
  if (selection != nullptr) static_cast<void>(InvokeByName(selection.Get(), L"Select", {}, nullptr));
  if (window == nullptr) return;
  ScrollBack(window.Get(), kScrollRow, scrollRow_);
  ScrollBack(window.Get(), kScrollColumn, scrollColumn_);
}

}  // namespace qv
