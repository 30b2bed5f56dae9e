#pragma once

#include <memory>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// The floating objects of a sheet; charts are the only kind so far.
class ShapesObject final : public DispatchObject {
 public:
  ShapesObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Count(Call&) { return Variant(static_cast<long>(sheet_->charts.size())); }
  Variant Item(Call& call);
  Variant AddChart2(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
};

/// One floating object.
class ShapeObject final : public DispatchObject {
 public:
  ShapeObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::shared_ptr<Chart> chart)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), chart_(std::move(chart)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Name(Call& call);
  Variant Type(Call& call);
  Variant HasChart(Call& call);
  Variant ChartOf(Call& call);
  template <double Chart::*Field>
  Variant Position(Call& call) {
    return AccessPosition(Field, call);
  }
  Variant Delete(Call& call);
  Variant Parent(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  [[nodiscard]] Variant AccessPosition(double Chart::*field, Call& call);

  std::shared_ptr<Sheet> sheet_;
  std::shared_ptr<Chart> chart_;
};

}  // namespace qv::devhost::memory
