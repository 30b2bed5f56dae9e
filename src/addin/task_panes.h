#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "addin/document_pane.h"
#include "addin/office_interfaces.h"
#include "foundation/variant.h"

namespace qv {

/// The add-in's task panes, one for each document window that asked for one. Host UI thread. Calls on the
/// host may run messages, and may come back here; loops that make them therefore go over a copy of the list.
class TaskPanes {
 public:
  /// The host's factory, before or after the connection.
  void SetFactory(ComPtr<ICTPFactory> factory) { factory_ = std::move(factory); }

  /// Shows a page of the panel in the window where the ribbon's `control` (may be null) was pressed, else in
  /// the active one. `mode` is "full", "selection" or empty. True when the page is shown, or asked of a pane
  /// whose browser still starts. What stands in the way is told in a message box.
  bool ShowPanePage(std::wstring_view page, std::wstring_view mode, IDispatch* control = nullptr);

  /// Lets go of panes whose window or task pane is gone, and hides the others.
  void PrunePanes();

  /// A tick of the pane's width timer.
  void PaneWidthTick(const CWebView2Pane& control);

  /// Stores the width of a live pane, once more before the host goes away.
  void SaveWidthAtShutdown() const;

  /// Lets go of the factory and of every object of the host; the panes are the host's to close.
  void ReleaseAll();

 private:
  using PanePointer = std::shared_ptr<DocumentPane>;

  // `warning` receives what the user is to be told when it cannot be done.
  [[nodiscard]] bool TryToShow(std::wstring_view page, std::wstring_view mode, IDispatch* control,
                               std::wstring& warning);
  [[nodiscard]] bool ShowInWindow(const ExcelWindow& window, std::wstring_view page, std::wstring_view mode,
                                  std::wstring& warning);
  /// The pane of the window, made when there is none; null when it cannot be made.
  [[nodiscard]] PanePointer EnsureTaskPane(const ExcelWindow& window, bool& created, std::wstring& warning);
  [[nodiscard]] PanePointer Create(const ExcelWindow& window, std::wstring& warning);
  [[nodiscard]] PanePointer FindByWindow(const ExcelWindow& window) const;
  [[nodiscard]] PanePointer FindByControl(const CWebView2Pane& control) const;
  [[nodiscard]] int GetInitialPaneWidth() const;
  void DropGonePanes();
  void Remove(const PanePointer& pane) { std::erase(panes_, pane); }

  ComPtr<ICTPFactory> factory_;
  std::vector<PanePointer> panes_;
  /// A page is being shown; a press that comes from inside the host's calls must not make a second pane.
  bool showing_ = false;
};

}  // namespace qv
