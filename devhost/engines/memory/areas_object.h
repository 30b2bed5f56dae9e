#pragma once

#include <memory>
#include <vector>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// The blocks of a range, counted from 1.
class AreasObject final : public DispatchObject {
 public:
  AreasObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::vector<Area> areas)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), areas_(std::move(areas)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Count(Call&) { return Variant(static_cast<long>(areas_.size())); }
  Variant Item(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
  std::vector<Area> areas_;
};

}  // namespace qv::devhost::memory
