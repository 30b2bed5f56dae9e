#pragma once

#include <memory>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// Throws RPC_E_DISCONNECTED for a deleted sheet or one of a closed workbook.
void RequireAliveSheet(const Sheet& sheet);

/// The host's general refusal for a name that is taken or not allowed, and for the deletion of the last
/// visible sheet. The sheet is alive.
void RenameSheet(Sheet& sheet, const std::wstring& name);
void RequireDeletable(const Sheet& sheet);

/// One worksheet.
class WorksheetObject final : public DispatchObject {
 public:
  WorksheetObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override { RequireAliveSheet(*sheet_); }
  [[nodiscard]] const std::shared_ptr<Sheet>& GetSheet() const { return sheet_; }

  Variant Name(Call& call);
  Variant Index(Call& call);
  Variant Type(Call& call);
  Variant Visible(Call& call);
  Variant Parent(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }
  Variant Cells(Call& call);
  Variant Range(Call& call);
  Variant Rows(Call& call);
  Variant Columns(Call& call);
  Variant UsedRange(Call& call);
  Variant ProtectContents(Call& call);
  Variant Protect(Call& call);
  Variant Unprotect(Call& call);
  Variant ChartObjects(Call& call);
  Variant Shapes(Call& call);
  Variant Activate(Call& call);
  Variant Delete(Call& call);
  Variant Calculate(Call& call);

 private:
  [[nodiscard]] std::shared_ptr<Workbook> Book() const;
  [[nodiscard]] Variant RowsOrColumns(Call& call, bool rows);

  std::shared_ptr<Sheet> sheet_;
};

}  // namespace qv::devhost::memory
