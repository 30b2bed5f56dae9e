#include "panel/pane_registry.h"

#include <algorithm>

#include "foundation/guard.h"
#include "foundation/variant.h"
#include "panel/web_view2_pane.h"

namespace qv {
namespace {

std::vector<CWebView2Pane*>& MutablePanes() {
  static std::vector<CWebView2Pane*> panes;
  return panes;
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

void PaneRegistry::BeginShutdownEarly() {
  // References of our own: letting go of the host's objects may let the host let go of a pane.
  std::vector<ComPtr<CWebView2Pane>> panes(Panes().begin(), Panes().end());
  for (const ComPtr<CWebView2Pane>& pane : panes)
    Guard(L"BeginShutdownEarly", [&] { pane->BeginShutdownEarly(); });
}

}  // namespace qv
