#include "addin/document_pane.h"

#include <utility>

#include "addin/pane_width_store.h"
#include "foundation/host_session.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "panel/pane_registry.h"
#include "workbook/automation.h"

namespace qv {
namespace {

/// A pane of a busy host is not gone.
bool FailedForGood(HRESULT hr) {
  return FAILED(hr) && !IsHostBusy(hr, 0);
}

bool IsTranslationMode(std::wstring_view mode) {
  return mode == L"full" || mode == L"selection";
}

HWND RootOf(std::intptr_t handle) {
  const HWND window = reinterpret_cast<HWND>(handle);
  const HWND root = GetAncestor(window, GA_ROOT);
  return root != nullptr ? root : window;
}

/// The caption as it is now; documents are renamed while their pane is open.
std::wstring CaptionOf(const ExcelWindow& window) {
  const std::wstring caption = GetStringProperty(window.window.Get(), L"Caption");
  return caption.empty() ? window.caption : caption;
}

bool HaveSameCaption(const ExcelWindow& known, const ExcelWindow& wanted) {
  return !wanted.caption.empty() && CaptionOf(known) == wanted.caption;
}

}  // namespace

bool IsSameWindow(const ExcelWindow& known, const ExcelWindow& wanted) {
  if (known.hwnd == 0 || wanted.hwnd == 0) return HaveSameCaption(known, wanted);
  if (!IsWpsProcess() && HostSession::Get().Kind() == HostKind::kExcel) return known.hwnd == wanted.hwnd;
  return RootOf(known.hwnd) == RootOf(wanted.hwnd) && HaveSameCaption(known, wanted);
}

bool DocumentPane::IsTaskPaneGone() const {
  VARIANT_BOOL visible = VARIANT_FALSE;
  ComPtr<IDispatch> control;
  return FailedForGood(taskPane_->get_Visible(&visible)) &&
         FailedForGood(taskPane_->get_ContentControl(&control));
}

bool DocumentPane::IsWornOut() {
  const ComPtr<CWebView2Pane> control = Control();
  if (control == nullptr) return number_ != 0;
  return control->HasFailed() || control->IsClosing();
}

ComPtr<CWebView2Pane> DocumentPane::Control() {
  if (number_ != 0) return PaneRegistry::Find(number_);
  ComPtr<IDispatch> content;
  if (FAILED(taskPane_->get_ContentControl(&content))) return nullptr;
  ComPtr<CWebView2Pane> control = PaneRegistry::FindControl(content.Get());
  if (control != nullptr) {
    number_ = control->Number();
    control->PinTarget(window_);
  }
  return control;
}

bool DocumentPane::IsVisible() const {
  VARIANT_BOOL visible = VARIANT_FALSE;
  return SUCCEEDED(taskPane_->get_Visible(&visible)) && visible != VARIANT_FALSE;
}

HRESULT DocumentPane::SetVisible(bool visible) {
  return taskPane_->put_Visible(visible ? VARIANT_TRUE : VARIANT_FALSE);
}

void DocumentPane::Delete() {
  // It may be gone already.
  static_cast<void>(taskPane_->Delete());
}

bool DocumentPane::ShowPage(std::wstring_view page, std::wstring_view mode) {
  const ComPtr<CWebView2Pane> control = Control();
  if (control == nullptr) {
    PaneLog(Concat(L"Excel ShowPanePage: pane ", number_, L" not registered yet\r\n"));
    waiting_ = WaitingPage{std::wstring(page), std::wstring(mode)};
    return false;
  }
  waiting_.reset();
  if (control->HasFailed() || control->IsClosing()) return false;
  if (IsTranslationMode(mode) && control->IsShowing(page)) {
    control->SetPanelMode(mode);
  } else {
    control->NavigateToPage(page, mode);
  }
  return true;
}

std::optional<int> DocumentPane::Width() const {
  int width = 0;
  if (FAILED(taskPane_->get_Width(&width))) return std::nullopt;
  return width;
}

void DocumentPane::BeginWidth(int width) {
  PaneLog(Concat(L"Excel pane width begin pt=", width, L" host=", HostKindText(HostSession::Get().Kind()),
                 L"\r\n"));
  width_ = StartPaneWidth(width);
  // A host that is not ready for it yet gets it from the watch.
  static_cast<void>(taskPane_->put_Width(width));
}

void DocumentPane::Tick(std::uint64_t now) {
  const PaneWidthActions actions = TickPaneWidth(width_, Width(), now);
  if (!actions.log.empty()) PaneLog(actions.log + L"\r\n");
  if (actions.apply) {
    // Refused while the pane is docked at the top or floats; the try counts all the same.
    static_cast<void>(taskPane_->put_Width(width_.target + 1));
    static_cast<void>(taskPane_->put_Width(width_.target));
  }
  if (actions.save) SaveObservedWidth(width_, *actions.save);
  if (const auto waiting = std::exchange(waiting_, std::nullopt)) {
    static_cast<void>(ShowPage(waiting->page, waiting->mode));
  }
}

}  // namespace qv
