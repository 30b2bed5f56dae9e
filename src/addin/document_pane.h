#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "addin/office_interfaces.h"
#include "addin/pane_width.h"
#include "foundation/variant.h"
#include "panel/web_view2_pane.h"
#include "workbook/excel_window.h"

namespace qv {

/// The task pane of one document window, with the width watch over it. Every call on the host's pane may run
/// messages, and may be the one in which the host takes the pane away. Host UI thread.
class DocumentPane {
 public:
  DocumentPane(ComPtr<_CustomTaskPane> taskPane, ExcelWindow window)
      : taskPane_(std::move(taskPane)), window_(std::move(window)) {}

  [[nodiscard]] const ExcelWindow& Window() const { return window_; }
  /// The same window, resolved again.
  void RefreshWindow(ExcelWindow window) { window_ = std::move(window); }
  [[nodiscard]] bool IsWindowGone() const { return IsClosedWindow(window_.window.Get()); }

  /// The host or the user has deleted the pane: nothing of it answers any more.
  [[nodiscard]] bool IsTaskPaneGone() const;
  /// The control cannot show a page any more, so that only a new pane helps.
  [[nodiscard]] bool IsWornOut();

  /// The control inside; null while the host has not made it, and after it is gone. The first time it is
  /// found it is told which window it works on.
  [[nodiscard]] ComPtr<CWebView2Pane> Control();
  /// The control's number, 0 while there is none.
  [[nodiscard]] int Number() const { return number_; }

  [[nodiscard]] bool IsVisible() const;
  [[nodiscard]] HRESULT SetVisible(bool visible);
  void Delete();

  /// Leads the control to the page, or tells a translation page that is shown already only its mode. False
  /// when the control cannot show it; when there is no control yet, it gets the page as soon as there is.
  [[nodiscard]] bool ShowPage(std::wstring_view page, std::wstring_view mode);

  /// Width in points; nothing when it cannot be read.
  [[nodiscard]] std::optional<int> Width() const;
  /// Asks the host for a width in points and watches whether it sticks.
  void BeginWidth(int width);
  /// One look of the width watch, and the page that waited for the control.
  void Tick(std::uint64_t now);
  [[nodiscard]] std::optional<int> WidthAtShutdown() const { return ShutdownPaneWidth(width_, Width()); }

 private:
  struct WaitingPage {
    std::wstring page;
    std::wstring mode;
  };

  ComPtr<_CustomTaskPane> taskPane_;
  ExcelWindow window_;
  int number_ = 0;
  PaneWidthRecord width_;
  std::optional<WaitingPage> waiting_;
};

/// Whether two resolved targets are one document window. Objects are never compared, because hosts hand out
/// new ones. In Excel the handle tells windows apart. In WPS all documents of a frame may share it, and a
/// document may have a child of the frame's for it, so there the frame and the caption decide.
[[nodiscard]] bool IsSameWindow(const ExcelWindow& known, const ExcelWindow& wanted);

}  // namespace qv
