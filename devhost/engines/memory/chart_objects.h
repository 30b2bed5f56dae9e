#pragma once

#include <memory>

#include "engines/memory/dispatch_object.h"
#include "engines/memory/shapes_object.h"

namespace qv::devhost::memory {

/// The chart that a 1-based number or a name means; refused when there is none.
[[nodiscard]] std::shared_ptr<Chart> FindChart(const Sheet& sheet, const VARIANT& index);

/// A new chart at the end of the sheet's charts, named "Chart 1" and so on.
std::shared_ptr<Chart> AddChart(Sheet& sheet, long type, double left, double top, double width,
                                double height);

/// The charts of a sheet.
class ChartObjectsObject final : public DispatchObject {
 public:
  ChartObjectsObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Count(Call&) { return Variant(static_cast<long>(sheet_->charts.size())); }
  Variant Item(Call& call);
  Variant Add(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
};

/// The frame of a chart on its sheet.
class ChartObjectObject final : public DispatchObject {
 public:
  ChartObjectObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::shared_ptr<Chart> chart)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), chart_(std::move(chart)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Name(Call& call);
  Variant Index(Call& call);
  template <double FloatingObject::*Field>
  Variant Position(Call& call) {
    return ShapeObject::AccessPosition(*chart_, Field, call);
  }
  Variant ChartOf(Call& call);
  Variant Parent(Call& call);
  Variant Delete(Call& call);
  Variant Select(Call& call);
  Variant ShapeRange(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
  std::shared_ptr<Chart> chart_;
};

/// A chart itself.
class ChartObject final : public DispatchObject {
 public:
  ChartObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::shared_ptr<Chart> chart)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), chart_(std::move(chart)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Name(Call&) { return Variant(chart_->name); }
  Variant HasTitle(Call& call);
  Variant Title(Call& call);
  Variant Type(Call& call);
  Variant SetSourceData(Call& call);
  Variant Paste(Call& call);
  Variant Export(Call& call);
  Variant CopyPicture(Call& call);
  Variant Parent(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
  std::shared_ptr<Chart> chart_;
};

/// The title of a chart that has one.
class ChartTitleObject final : public DispatchObject {
 public:
  ChartTitleObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::shared_ptr<Chart> chart)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), chart_(std::move(chart)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Text(Call& call);
  Variant Font(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
  std::shared_ptr<Chart> chart_;
};

}  // namespace qv::devhost::memory
