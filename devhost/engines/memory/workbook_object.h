#pragma once

#include <memory>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// Throws RPC_E_DISCONNECTED for a closed workbook.
void RequireAliveWorkbook(const Workbook& workbook);

/// One open workbook.
class WorkbookObject final : public DispatchObject {
 public:
  WorkbookObject(std::shared_ptr<Host> host, std::shared_ptr<Workbook> workbook)
      : DispatchObject(std::move(host)), workbook_(std::move(workbook)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override { RequireAliveWorkbook(*workbook_); }

  Variant Name(Call&) { return Variant(workbook_->name); }
  Variant FullName(Call&) { return Variant(workbook_->FullName()); }
  Variant Path(Call&) { return Variant(workbook_->path); }
  Variant ReadOnly(Call&) { return Variant(workbook_->readOnly); }
  Variant Saved(Call& call);
  Variant ProtectStructure(Call& call);
  Variant Protect(Call& call);
  Variant Unprotect(Call& call);
  Variant Worksheets(Call& call);
  Variant ActiveSheet(Call& call);
  Variant Windows(Call& call);
  Variant NewWindow(Call& call);
  Variant Activate(Call& call);
  Variant Close(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  /// The workbook's window that is nearest the front.
  [[nodiscard]] std::shared_ptr<Window> FrontWindow() const;

  std::shared_ptr<Workbook> workbook_;
};

/// All open workbooks, by 1-based number or by name.
class WorkbooksObject final : public DispatchObject {
 public:
  explicit WorkbooksObject(std::shared_ptr<Host> host) : DispatchObject(std::move(host)) {}

  [[nodiscard]] const ClassInfo& Class() const override;

  Variant Count(Call& call);
  Variant Item(Call& call);
  Variant Add(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }
};

}  // namespace qv::devhost::memory
