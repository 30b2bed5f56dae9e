#include "translation/cell_style.h"

#include <array>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/automation.h"

namespace qv {
namespace {

bool Put(IDispatch* object, std::wstring_view name, const Variant& value) {
  return SUCCEEDED(PutDispProperty(object, name, &value));
}

void PutFontPart(IDispatch* font, std::wstring_view name, const Variant& value) {
  if (!Put(font, name, value)) PaneLog(Concat(L"Excel bilingual Font.", name, L" failed\r\n"));
}

std::optional<std::int32_t> CaptureColor(IDispatch* font, std::int32_t row, std::int32_t col) {
  Variant color;
  const HRESULT hr = GetProperty(font, L"Color", color);
  const bool isNumber = color.Type() == VT_R8 || color.Type() == VT_I4 || color.Type() == VT_UI4;
  if (SUCCEEDED(hr) && isNumber) return IntegerOf(color);
  PaneLog(Concat(L"CellStyleBaseline color unreadable row=", row, L" col=", col, L" vt=", color.Type(),
                 L" -> automatic\r\n"));
  return std::nullopt;
}

/// The font of a piece of the cell's text, or null (logged).
ComPtr<IDispatch> FontOfPiece(IDispatch* cell, std::int32_t start, std::int32_t length) {
  const std::array<Variant, 2> piece = {Variant(start), Variant(length)};
  Variant characters;
  const HRESULT hr = GetIndexedProperty(cell, L"Characters", piece, characters);
  if (hr == DISP_E_UNKNOWNNAME) {
    PaneLog(L"Excel bilingual Characters GetIDsOfNames failed\r\n");
    return nullptr;
  }
  ComPtr<IDispatch> font;
  if (SUCCEEDED(hr)) font = GetDispProperty(characters.Object().Get(), L"Font");
  if (font == nullptr) PaneLog(L"Excel bilingual Characters failed (WPS may omit color)\r\n");
  return font;
}

}  // namespace

BaselineFont CaptureBaselineFont(IDispatch* cell, std::int32_t row, std::int32_t col) {
  PaneLog(Concat(L"CellStyleBaseline capture row=", row, L" col=", col, L"\r\n"));
  const ComPtr<IDispatch> font = GetDispProperty(cell, L"Font");
  BaselineFont baseline;
  Variant name;
  if (SUCCEEDED(GetProperty(font.Get(), L"Name", name)) && name.IsText()) baseline.name = name.Text();
  baseline.size = GetNumberProperty(font.Get(), L"Size");
  baseline.bold = GetFlagProperty(font.Get(), L"Bold");
  baseline.color = CaptureColor(font.Get(), row, col);
  return baseline;
}

ComPtr<IDispatch> MergeAreaOf(IDispatch* cell) {
  if (!GetFlagProperty(cell, L"MergeCells").value_or(false)) return nullptr;
  return GetDispProperty(cell, L"MergeArea");
}

void WrapCellText(IDispatch* cell) {
  const Variant on(true);
  if (!Put(cell, L"WrapText", on)) PaneLog(L"Excel bilingual WrapText failed\r\n");
  const ComPtr<IDispatch> area = MergeAreaOf(cell);
  if (area != nullptr && !Put(area.Get(), L"WrapText", on)) {
    PaneLog(L"Excel bilingual MergeArea WrapText failed\r\n");
  }
}

void StyleTranslation(IDispatch* cell, const BilingualValue& value, const TargetFont& font) {
  const ComPtr<IDispatch> piece = FontOfPiece(cell, value.start, value.length);
  if (piece == nullptr) return;
  PutFontPart(piece.Get(), L"Color", Variant(font.color));
  if (font.bold) PutFontPart(piece.Get(), L"Bold", Variant(*font.bold));
  if (font.name) PutFontPart(piece.Get(), L"Name", Variant(*font.name));
  if (font.size) PutFontPart(piece.Get(), L"Size", Variant(*font.size));
}

}  // namespace qv
