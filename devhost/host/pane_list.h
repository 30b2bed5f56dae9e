#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/pane_frame.h"

namespace qv::devhost {

/// All task panes of the host, whether it opened them itself or the add-in asked its factory. UI thread.
class PaneList {
 public:
  struct Pane {
    /// 1-based, never used again.
    int number;
    std::shared_ptr<PaneFrame> frame;
  };

  /// The log is borrowed.
  explicit PaneList(CallLog& log) : log_(log) {}

  /// Throws std::runtime_error when the control cannot be made.
  Pane Open(const std::wstring& progId, const std::wstring& title, bool visible);
  /// The open pane with this number, or null.
  [[nodiscard]] std::shared_ptr<PaneFrame> Find(int number) const;
  /// Panes that are open now, oldest first.
  [[nodiscard]] std::vector<Pane> OpenPanes() const;
  void CloseAll();
  /// What all panes that were closed so far left behind.
  [[nodiscard]] ControlContainer::Leaks Leaks() const;

 private:
  CallLog& log_;
  std::vector<Pane> panes_;
};

}  // namespace qv::devhost
