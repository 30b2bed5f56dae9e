#include "engines/memory/style_access.h"

#include <utility>

namespace qv::devhost::memory {

Variant StyleVariant(const std::optional<StyleValue>& value) {
  if (!value) {
    Variant mixed;
    mixed.Put()->vt = VT_NULL;
    return mixed;
  }
  if (const auto* text = std::get_if<std::wstring>(&*value)) return Variant(std::wstring_view(*text));
  if (const auto* flag = std::get_if<bool>(&*value)) return Variant(*flag);
  if (const auto* number = std::get_if<double>(&*value)) return Variant(*number);
  return Variant(std::get<long>(*value));
}

StyleValue StyleValueOf(const VARIANT& value) {
  if (value.vt == VT_BSTR) return ToText(value);
  if (value.vt == VT_BOOL) return ToBool(value);
  if (value.vt == VT_EMPTY || value.vt == VT_NULL || (value.vt & VT_ARRAY) != 0) Refuse();
  return ToDouble(value);
}

bool Uniform::Add(StyleValue value) {
  if (!common_) {
    common_ = std::move(value);
  } else if (*common_ != value) {
    mixed_ = true;
  }
  return !mixed_;
}

std::optional<StyleValue> ReadCellStyle(const Sheet& sheet, const std::vector<Area>& areas,
                                        const StyleProperty<CellStyle>& property) {
  Uniform uniform;
  ForEachStyle(sheet, areas,
               [&](const CellStyle& style, const Cell*) { return uniform.Add(property.read(style)); });
  return uniform.Result();
}

void WriteCellStyle(Sheet& sheet, const std::vector<Area>& areas, const StyleProperty<CellStyle>& property,
                    const VARIANT& value) {
  Host::RequireFormattable(sheet);
  const StyleValue wanted = StyleValueOf(value);
  CellStyle probe;
  if (!property.write(probe, wanted)) Refuse();
  for (const Area& area : areas)
    sheet.ChangeStyle(area, [&](CellStyle& style) { static_cast<void>(property.write(style, wanted)); });
}

}  // namespace qv::devhost::memory
