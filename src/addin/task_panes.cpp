#include "addin/task_panes.h"

#include <algorithm>
#include <utility>

#include "addin/host_message.h"
#include "addin/pane_width_store.h"
#include "foundation/catalog.h"
#include "foundation/flag_scope.h"
#include "foundation/host_session.h"
#include "foundation/logging.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr wchar_t kPaneProgId[] = L"Quorvantis.ExcelPane";

/// Asks the host for a task pane in a window, or with `Variant::Missing()` in the active one.
HRESULT CreateTaskPane(ICTPFactory* factory, const Variant& window, ComPtr<_CustomTaskPane>& taskPane) {
  const Bstr progId(kPaneProgId);
  const Bstr title(GetCatalogText(L"msg.paneTitle"));
  const HRESULT hr = factory->CreateCTP(progId.Get(), title.Get(), window.Get(), &taskPane);
  return SUCCEEDED(hr) && taskPane == nullptr ? E_FAIL : hr;
}

std::wstring CreationFailed(HRESULT hr) {
  PaneLog(Concat(L"Excel CreateCTP failed hr=0x", Hex8(hr), L"\r\n"));
  return FormatCatalogText(GetCatalogText(L"msg.createPaneFailed"), L"{hr}", Concat(L"0x", Hex8(hr)));
}

}  // namespace

bool TaskPanes::ShowPanePage(std::wstring_view page, std::wstring_view mode, IDispatch* control) {
  PaneLog(L"Excel ShowPanePage\r\n");
  if (showing_) return false;
  std::wstring warning;
  const bool shown = TryToShow(page, mode, control, warning);
  // Nothing is being shown any more: while the box is open, the buttons of other windows work.
  if (!warning.empty()) ShowHostWarning(warning);
  return shown;
}

bool TaskPanes::TryToShow(std::wstring_view page, std::wstring_view mode, IDispatch* control,
                          std::wstring& warning) {
  const FlagScope scope(showing_);
  const ComPtr<IDispatch> application = HostSession::Get().Application();
  if (application == nullptr) {
    warning = GetCatalogText(L"msg.hostNotReady.excel");
    return false;
  }
  const ExcelWindow window = ExcelWindow::ResolveForInvocation(application.Get(), control);
  if (!window.IsValid()) {
    PaneLog(L"Excel ShowPanePage: no window resolved\r\n");
    warning = GetCatalogText(L"msg.noWindow.excel");
    return false;
  }
  return ShowInWindow(window, page, mode, warning);
}

bool TaskPanes::ShowInWindow(const ExcelWindow& window, std::wstring_view page, std::wstring_view mode,
                             std::wstring& warning) {
  DropGonePanes();
  bool created = false;
  const PanePointer pane = EnsureTaskPane(window, created, warning);
  if (pane == nullptr) return false;
  if (FAILED(pane->SetVisible(true))) {
    warning = GetCatalogText(L"msg.hostNotReady.excel");
    return false;
  }
  PaneLog(Concat(L"Excel ShowPanePage page=", page, L"\r\n"));
  const auto panes = panes_;
  const auto visible =
      std::count_if(panes.begin(), panes.end(), [](const PanePointer& other) { return other->IsVisible(); });
  PaneLog(Concat(L"Excel ShowPanePage visible panes=", visible, L" justCreated=", created, L"\r\n"));
  return pane->ShowPage(page, mode);
}

TaskPanes::PanePointer TaskPanes::EnsureTaskPane(const ExcelWindow& window, bool& created,
                                                 std::wstring& warning) {
  created = false;
  if (PanePointer pane = FindByWindow(window)) {
    if (!pane->IsWornOut()) {
      PaneLog(Concat(L"Excel EnsureTaskPane reuse panes=", panes_.size(), L"\r\n"));
      pane->RefreshWindow(window);
      return pane;
    }
    Remove(pane);
    pane->Delete();
  }
  PaneLog(Concat(L"Excel EnsureTaskPane no-match panes=", panes_.size(), L" want ", window.WindowIdentity(),
                 L"\r\n"));
  for (const PanePointer& pane : panes_)
    PaneLog(
        Concat(L"Excel   existing pane=", pane->Number(), L" ", pane->Window().WindowIdentity(), L"\r\n"));
  PanePointer pane = Create(window, warning);
  created = pane != nullptr;
  return pane;
}

TaskPanes::PanePointer TaskPanes::Create(const ExcelWindow& window, std::wstring& warning) {
  const ComPtr<ICTPFactory> factory = factory_;
  if (factory == nullptr) {
    PaneLog(L"Excel EnsureTaskPane: CTP factory null\r\n");
    warning = GetCatalogText(L"msg.paneFactory.excel");
    return nullptr;
  }
  ComPtr<_CustomTaskPane> taskPane;
  HRESULT hr = CreateTaskPane(factory.Get(), Variant(window.window.Get()), taskPane);
  const bool degraded = FAILED(hr);
  if (degraded) {
    PaneLog(
        Concat(L"Excel CreateCTP with parent failed hr=0x", Hex8(hr), L", retry vtMissing (degraded)\r\n"));
    hr = CreateTaskPane(factory.Get(), Variant::Missing(), taskPane);
  }
  if (FAILED(hr)) {
    warning = CreationFailed(hr);
    return nullptr;
  }
  const auto pane = std::make_shared<DocumentPane>(std::move(taskPane), window);
  // Asks the host too, and so belongs ahead of the check.
  const int width = GetInitialPaneWidth();
  if (factory_.Get() != factory.Get()) {
    // The connection ended meanwhile, and nobody would let go of the pane.
    pane->Delete();
    return nullptr;
  }
  panes_.push_back(pane);
  static_cast<void>(pane->Control());
  PaneLog(Concat(L"Excel CreateCTP OK pane=", pane->Number(), L" panes=", panes_.size(), L" degraded=",
                 degraded, L"\r\n"));
  pane->BeginWidth(width);
  return pane;
}

int TaskPanes::GetInitialPaneWidth() const {
  const auto panes = panes_;
  for (const PanePointer& pane : panes) {
    const int width = pane->Width().value_or(0);
    if (width < kLeastTrueWidthPt) continue;
    PaneLog(Concat(L"PaneWidth initial from live pane pt=", width, L"\r\n"));
    return width;
  }
  return LoadInitialPaneWidth();
}

TaskPanes::PanePointer TaskPanes::FindByWindow(const ExcelWindow& window) const {
  const auto panes = panes_;
  const auto found = std::find_if(panes.begin(), panes.end(), [&](const PanePointer& pane) {
    return IsSameWindow(pane->Window(), window);
  });
  return found == panes.end() ? nullptr : *found;
}

TaskPanes::PanePointer TaskPanes::FindByControl(const CWebView2Pane& control) const {
  const auto panes = panes_;
  for (const PanePointer& pane : panes) {
    // The host may make a pane's control only when the pane is shown.
    if (pane->Number() == 0) static_cast<void>(pane->Control());
    if (pane->Number() == control.Number()) return pane;
  }
  return nullptr;
}

void TaskPanes::DropGonePanes() {
  const auto panes = panes_;
  for (const PanePointer& pane : panes) {
    const wchar_t* reason = pane->IsWindowGone()     ? L"window_gone"
                            : pane->IsTaskPaneGone() ? L"no_ctp"
                                                     : nullptr;
    if (reason == nullptr) continue;
    PaneLog(Concat(L"Excel pane prune pane=", pane->Number(), L" reason=", reason, L"\r\n"));
    Remove(pane);
    pane->Delete();
  }
}

void TaskPanes::PrunePanes() {
  DropGonePanes();
  const auto panes = panes_;
  for (const PanePointer& pane : panes) {
    const HRESULT hr = pane->SetVisible(false);
    PaneLog(Concat(L"Excel pane prune keep pane=", pane->Number(), L" hide hr=0x", Hex8(hr), L"\r\n"));
  }
}

void TaskPanes::PaneWidthTick(const CWebView2Pane& control) {
  if (const PanePointer pane = FindByControl(control)) pane->Tick(GetTickCount64());
}

void TaskPanes::SaveWidthAtShutdown() const {
  std::optional<int> width;
  const auto panes = panes_;
  for (const PanePointer& pane : panes) {
    const std::optional<int> own = pane->WidthAtShutdown();
    // What the user sees counts more than a pane that is put away.
    if (own && (!width || pane->IsVisible())) width = own;
  }
  if (width) SaveWidthOfShutdown(*width);
}

void TaskPanes::ReleaseAll() {
  factory_.Reset();
  // Taken out first: a last release may come back here.
  const auto panes = std::exchange(panes_, {});
}

}  // namespace qv
