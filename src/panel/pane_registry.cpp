#include "panel/pane_registry.h"

#include <algorithm>
#include <utility>

#include "foundation/guard.h"
#include "foundation/variant.h"
#include "panel/web_view2_pane.h"

namespace qv {
namespace {

std::vector<CWebView2Pane*>& MutablePanes() {
  static std::vector<CWebView2Pane*> panes;
  return panes;
}

std::function<void(CWebView2Pane&)>& MutableTick() {
  static std::function<void(CWebView2Pane&)> tick;
  return tick;
}

/// The pointer by which COM tells objects apart.
ComPtr<IUnknown> IdentityOf(IUnknown* object) {
  ComPtr<IUnknown> identity;
  if (object != nullptr) static_cast<void>(object->QueryInterface(IID_PPV_ARGS(&identity)));
  return identity;
}

}  // namespace

int PaneRegistry::NextNumber() {
  static int last = 0;
  return ++last;
}

void PaneRegistry::Add(CWebView2Pane& pane) {
  MutablePanes().push_back(&pane);
}

void PaneRegistry::Remove(CWebView2Pane& pane) {
  std::erase(MutablePanes(), &pane);
}

const std::vector<CWebView2Pane*>& PaneRegistry::Panes() {
  return MutablePanes();
}

CWebView2Pane* PaneRegistry::Find(int number) {
  const auto found = std::find_if(Panes().begin(), Panes().end(),
                                  [number](const CWebView2Pane* pane) { return pane->Number() == number; });
  return found == Panes().end() ? nullptr : *found;
}

CWebView2Pane* PaneRegistry::FindControl(IUnknown* control) {
  const ComPtr<IUnknown> identity = IdentityOf(control);
  if (identity == nullptr) return nullptr;
  for (CWebView2Pane* pane : Panes()) {
    if (IdentityOf(static_cast<IOleObject*>(pane)).Get() == identity.Get()) return pane;
  }
  return nullptr;
}

void PaneRegistry::SetTick(std::function<void(CWebView2Pane&)> tick) {
  MutableTick() = std::move(tick);
}

void PaneRegistry::Tick(CWebView2Pane& pane) {
  // A copy: the connection may end, and take its function back, while it runs.
  if (const auto tick = MutableTick()) tick(pane);
}

void PaneRegistry::BeginShutdownEarly() {
  // References of our own: letting go of the host's objects may let the host let go of a pane.
  std::vector<ComPtr<CWebView2Pane>> panes(Panes().begin(), Panes().end());
  for (const ComPtr<CWebView2Pane>& pane : panes)
    Guard(L"BeginShutdownEarly", [&] { pane->BeginShutdownEarly(); });
}

}  // namespace qv
