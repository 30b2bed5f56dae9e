#pragma once

#include <memory>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// One window of a workbook; every member of a closed one answers RPC_E_DISCONNECTED.
class WindowObject final : public DispatchObject {
 public:
  WindowObject(std::shared_ptr<Host> host, std::shared_ptr<Window> window)
      : DispatchObject(std::move(host)), window_(std::move(window)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Caption(Call& call);
  Variant Hwnd(Call& call);
  Variant Parent(Call& call);
  Variant ActiveSheet(Call& call);
  Variant ActiveCell(Call& call);
  Variant Selection(Call& call);
  Variant RangeSelection(Call& call);
  Variant VisibleRange(Call& call);
  Variant Index(Call& call);
  Variant Activate(Call& call);
  Variant Close(Call& call);
  Variant FreezePanes(Call& call);
  template <long SheetView::*Field>
  Variant ViewNumber(Call& call) {
    return ViewField(Field, call);
  }
  Variant Visible(Call& call);
  Variant WindowState(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 protected:
  [[nodiscard]] bool Lacks(std::string_view member) const override;

 private:
  /// The view of the active sheet.
  [[nodiscard]] SheetView& View() const;
  [[nodiscard]] Variant ViewField(long SheetView::*field, Call& call);

  std::shared_ptr<Window> window_;
};

/// The windows of one workbook, or of all of them, the active one first.
class WindowsObject final : public DispatchObject {
 public:
  /// A null workbook means all windows.
  WindowsObject(std::shared_ptr<Host> host, std::shared_ptr<Workbook> workbook)
      : DispatchObject(std::move(host)), workbook_(std::move(workbook)) {}

  [[nodiscard]] const ClassInfo& Class() const override;

  Variant Count(Call& call);
  Variant Item(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Workbook> workbook_;
};

/// The window that a 1-based number or a caption means; refused when there is none.
[[nodiscard]] std::shared_ptr<Window> FindWindowItem(const Host& host,
                                                     const std::shared_ptr<Workbook>& workbook,
                                                     const VARIANT& index);

}  // namespace qv::devhost::memory
