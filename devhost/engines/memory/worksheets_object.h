#pragma once

#include <memory>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// The worksheets of a workbook, hidden ones included, by 1-based number or by name. Serves "Worksheets" and
/// "Sheets" alike: this model has no other kind of sheet.
class WorksheetsObject final : public DispatchObject {
 public:
  WorksheetsObject(std::shared_ptr<Host> host, std::shared_ptr<Workbook> workbook)
      : DispatchObject(std::move(host)), workbook_(std::move(workbook)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Count(Call& call);
  Variant Item(Call& call);
  Variant Add(Call& call);
  Variant Parent(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Workbook> workbook_;
};

/// The sheet that a number or name means; refused when there is none.
[[nodiscard]] std::shared_ptr<Sheet> FindSheetItem(const Workbook& workbook, const VARIANT& index);

}  // namespace qv::devhost::memory
