#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engines/engine.h"
#include "host/document_layout.h"
#include "host/grid_view.h"
#include "host/ribbon_bar.h"

namespace qv::devhost {

class PaneFrame;

/// What all document windows of a host share.
struct DocumentSurroundings {
  Engine& engine;
  HostStyle style;
  /// Whether windows are shown at all; hidden ones have no ribbon bar and no grid.
  bool isShown;
  /// The one frame of all documents as in WPS, or null where each has a top-level window of its own.
  HWND frame = nullptr;
  /// Null before the add-in is loaded.
  Ribbon* ribbon = nullptr;
  /// The user clicked a button, into a window that was not active, or closed one. Windows are given by id.
  std::function<void(const RibbonItem&, int)> onPress;
  std::function<void(int)> onActivated;
  std::function<void(int)> onClose;
};

/// The host's window of one document: ribbon on top, the sheet, task panes at the sides. UI thread.
class DocumentWindow {
 public:
  /// `id` is the engine's, 0 for the window without a document. The surroundings are borrowed. Throws
  /// std::runtime_error when there is no window.
  DocumentWindow(const DocumentSurroundings& surroundings, int id);
  DocumentWindow(const DocumentWindow&) = delete;
  DocumentWindow& operator=(const DocumentWindow&) = delete;
  /// Closes its panes first.
  ~DocumentWindow();

  [[nodiscard]] int Id() const { return id_; }
  [[nodiscard]] HWND Window() const { return window_; }
  /// In pixels.
  [[nodiscard]] SIZE ClientSize() const;
  /// Shows the document's name with the host's.
  void SetCaption(const std::wstring& document);
  void SetVisible(bool visible);

  /// A pane enters itself at its start and leaves at its end.
  void Add(PaneFrame& pane);
  void Remove(PaneFrame& pane);
  void ClosePanes();
  /// Places everything anew.
  void LayOut();

  /// The ribbon is there now, its texts or pictures are no longer valid, or it is about to go.
  void UpdateRibbon();
  /// Shows what the sheet looks like now; false when that has to wait.
  [[nodiscard]] bool RefreshGrid();

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void Paint();

  const DocumentSurroundings& surroundings_;
  int id_;
  HWND window_ = nullptr;
  std::wstring caption_;
  std::unique_ptr<RibbonBar> ribbonBar_;
  std::unique_ptr<GridView> grid_;
  std::vector<PaneFrame*> panes_;
};

}  // namespace qv::devhost
