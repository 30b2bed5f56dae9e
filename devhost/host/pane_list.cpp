#include "host/pane_list.h"

#include <algorithm>

namespace qv::devhost {

PaneList::Pane PaneList::Open(const std::wstring& progId, const std::wstring& title, bool visible,
                              DocumentWindow& document) {
  Pane pane{static_cast<int>(panes_.size()) + 1,
            std::make_shared<PaneFrame>(progId, title, visible, document, log_)};
  panes_.push_back(pane);
  return pane;
}

std::shared_ptr<PaneFrame> PaneList::Find(int number) const {
  const auto found = std::find_if(panes_.begin(), panes_.end(), [number](const Pane& pane) {
    return pane.number == number && pane.frame->IsOpen();
  });
  return found == panes_.end() ? nullptr : found->frame;
}

std::vector<PaneList::Pane> PaneList::OpenPanes() const {
  std::vector<Pane> open;
  std::copy_if(panes_.begin(), panes_.end(), std::back_inserter(open),
               [](const Pane& pane) { return pane.frame->IsOpen(); });
  return open;
}

void PaneList::CloseAll() {
  for (const auto& pane : OpenPanes())
    pane.frame->Close();
}

ControlContainer::Leaks PaneList::Leaks() const {
  ControlContainer::Leaks sum;
  for (const auto& pane : panes_) {
    sum.control += pane.frame->Leaks().control;
    sum.site += pane.frame->Leaks().site;
  }
  return sum;
}

}  // namespace qv::devhost
