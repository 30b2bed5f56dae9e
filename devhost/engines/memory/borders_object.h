#pragma once

#include <memory>
#include <vector>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// The borders of a range: those of all its edges at once, or one edge by the host's number (7 left, 8 top,
/// 9 bottom, 10 right, 11 between columns, 12 between rows).
class BordersObject final : public DispatchObject {
 public:
  BordersObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::vector<Area> areas)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), areas_(std::move(areas)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Count(Call&) { return Variant(6L); }
  Variant Item(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
  std::vector<Area> areas_;
};

/// One edge of a range.
class BorderObject final : public DispatchObject {
 public:
  BorderObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::vector<Area> areas, long edge)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), areas_(std::move(areas)), edge_(edge) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant LineStyle(Call& call);
  Variant Weight(Call& call);
  Variant Color(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  [[nodiscard]] Variant Access(long BorderLine::*field, Call& call, bool (*isAllowed)(long));

  std::shared_ptr<Sheet> sheet_;
  std::vector<Area> areas_;
  long edge_;
};

}  // namespace qv::devhost::memory
