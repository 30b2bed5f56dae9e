#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/document_windows.h"
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

  /// Document windows and log are borrowed.
  PaneList(DocumentWindows& documents, CallLog& log) : documents_(documents), log_(log) {}

  [[nodiscard]] DocumentWindows& Documents() const { return documents_; }
  /// Opens a pane in a document window. Throws std::runtime_error when the control cannot be made.
  Pane Open(const std::wstring& progId, const std::wstring& title, bool visible, DocumentWindow& document);
  /// The open pane with this number, or null.
  [[nodiscard]] std::shared_ptr<PaneFrame> Find(int number) const;
  /// Panes that are open now, oldest first.
  [[nodiscard]] std::vector<Pane> OpenPanes() const;
  void CloseAll();
  /// What all panes that were closed so far left behind.
  [[nodiscard]] ControlContainer::Leaks Leaks() const;

 private:
  DocumentWindows& documents_;
  CallLog& log_;
  std::vector<Pane> panes_;
};

}  // namespace qv::devhost
