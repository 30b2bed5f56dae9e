#include "engines/memory/areas_object.h"

#include "engines/memory/range_object.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {

const ClassInfo& AreasObject::Class() const {
  using A = AreasObject;
  static const ClassInfo info("Areas",
                              {
                                  {L"Count", kGet, Do<&A::Count>},
                                  {L"Item", kGet, Do<&A::Item>},
                                  {L"Application", kGet, Do<&A::Application>},
                              },
                              L"Item", true);
  return info;
}

void AreasObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

Variant AreasObject::Item(Call& call) {
  const long number = call.Long(0, 0);
  if (number < 1 || number > static_cast<long>(areas_.size())) Refuse();
  return Make<RangeObject>(SharedHost(), sheet_, std::vector{areas_[static_cast<size_t>(number - 1)]});
}

}  // namespace qv::devhost::memory
