#include "engines/memory/interior_object.h"

#include "engines/memory/style_access.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {

const ClassInfo& InteriorObject::Class() const {
  using I = InteriorObject;
  static const ClassInfo info("Interior",
                              {
                                  {L"Color", kGet | kPut, Do<&I::Access<kInteriorColor>>},
                                  {L"ColorIndex", kGet | kPut, Do<&I::Access<kInteriorColorIndex>>},
                                  {L"Pattern", kGet | kPut, Do<&I::Access<kInteriorPattern>>},
                                  {L"ThemeColor", kGet | kPut, Do<&I::ThemeColor>},
                                  {L"TintAndShade", kGet | kPut, Do<&I::Access<kInteriorTint>>},
                                  {L"Application", kGet, Do<&I::Application>},
                              });
  return info;
}

void InteriorObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

Variant InteriorObject::ThemeColor(Call& call) {
  Variant theme = AccessProperty(kInteriorThemeColor, call);
  if (theme.Type() == VT_I4 && theme->lVal == 0) Refuse();
  return theme;
}

Variant InteriorObject::AccessProperty(const StyleProperty<CellStyle>& property, Call& call) {
  if (!call.IsPut()) return StyleVariant(ReadCellStyle(*sheet_, areas_, property));
  WriteCellStyle(*sheet_, areas_, property, call.Value());
  return {};
}

}  // namespace qv::devhost::memory
