#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/document_frame.h"
#include "host/document_window.h"

namespace qv::devhost {

/// The windows of all documents that the engine has open. UI thread.
class DocumentWindows {
 public:
  struct Look {
    HostStyle style = HostStyle::kExcel;
    /// Without it the same windows exist hidden, for tests.
    bool isShown = false;
  };

  /// The engine is borrowed and told every window's handle.
  DocumentWindows(Engine& engine, Look look);
  DocumentWindows(const DocumentWindows&) = delete;
  DocumentWindows& operator=(const DocumentWindows&) = delete;
  ~DocumentWindows();

  /// Makes, renames and closes windows so that they are those of the engine. Panes of windows that are gone
  /// are closed.
  void Sync();
  /// `Sync`, and shows what the sheets look like now; nothing when nothing has changed. False when a sheet
  /// cannot be read now; the next call tries again.
  [[nodiscard]] bool Refresh();

  /// Draws everything that waits to be drawn.
  void Repaint();

  /// The active window; without a document an empty one.
  [[nodiscard]] DocumentWindow& Active();
  /// Null when there is none with this id.
  [[nodiscard]] DocumentWindow* Find(int id);
  /// The window that a Window object of the spreadsheet stands for, or null.
  [[nodiscard]] DocumentWindow* FindFor(IDispatch* window);
  /// The top-level window that a user sees, of the active document.
  [[nodiscard]] HWND TopWindow();
  [[nodiscard]] bool IsShown() const { return surroundings_.isShown; }

  /// Brings a window to the front and makes it the active one. Throws std::runtime_error for an unknown id.
  void Activate(int id);
  /// Closes a window with its panes, and its document with its last window. Throws for an unknown id, or when
  /// an add-in keeps the document open.
  void Close(int id);
  /// Closes all windows on a workbook; an empty name means the active one. Throws as `Close` does.
  void CloseWorkbook(const std::wstring& name);

  /// The ribbon that windows show from now on; null takes it away.
  void SetRibbon(Ribbon* ribbon);
  /// Whether the user has closed the last window.
  [[nodiscard]] bool IsClosedByUser() const { return isClosedByUser_; }

 private:
  void CloseMissing(const std::vector<WindowInfo>& infos);
  void Update(const WindowInfo& info);
  void OnUserClosed(int id);
  void CloseAnnounced(int id);
  void ShowActive(const std::vector<WindowInfo>& infos);
  [[nodiscard]] DocumentWindow& ActiveOf(const std::vector<WindowInfo>& infos);
  [[nodiscard]] DocumentWindow& Empty();

  DocumentSurroundings surroundings_;
  std::unique_ptr<DocumentFrame> frame_;
  std::vector<std::unique_ptr<DocumentWindow>> windows_;
  std::unique_ptr<DocumentWindow> empty_;
  int active_ = 0;
  /// The engine's revision that all windows show.
  std::uint64_t shownRevision_ = 0;
  /// What the engine was last told to answer for the Application.
  HWND toldHandle_ = nullptr;
  bool isSyncing_ = false;
  bool isClosedByUser_ = false;
};

}  // namespace qv::devhost
