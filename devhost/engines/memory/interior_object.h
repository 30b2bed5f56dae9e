#pragma once

#include <memory>
#include <vector>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// The fill of a range.
class InteriorObject final : public DispatchObject {
 public:
  InteriorObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::vector<Area> areas)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), areas_(std::move(areas)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  template <const StyleProperty<CellStyle>& Property>
  Variant Access(Call& call) {
    return AccessProperty(Property, call);
  }
  /// Refused where the colour is not of the theme.
  Variant ThemeColor(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  [[nodiscard]] Variant AccessProperty(const StyleProperty<CellStyle>& property, Call& call);

  std::shared_ptr<Sheet> sheet_;
  std::vector<Area> areas_;
};

}  // namespace qv::devhost::memory
