#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// Part of a cell's text: `length` units from 1-based `start`; a negative length reaches to the end. Refuses
/// to work on several cells.
class CharactersObject final : public DispatchObject {
 public:
  CharactersObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, const std::vector<Area>& areas,
                   long start, long length);

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Text(Call& call);
  Variant Count(Call& call);
  Variant Font(Call& call);
  Variant Parent(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  [[nodiscard]] std::wstring WholeText() const;
  /// 0-based start within the text.
  [[nodiscard]] size_t Start(const std::wstring& text) const;
  [[nodiscard]] size_t Length(const std::wstring& text) const;

  std::shared_ptr<Sheet> sheet_;
  std::vector<Area> areas_;
  long start_;
  long length_;
};

}  // namespace qv::devhost::memory
