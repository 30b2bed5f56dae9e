#include "translation/cell_style.h"

#include <array>

#include "foundation/logging.h"
#include "foundation/text.h"
#include "workbook/automation.h"

namespace qv {
namespace {

/// Of several refusals the first is kept, but a busy answer goes before all others.
void Keep(HostAnswer& answer, const HostAnswer& own) {
  if (!own.Ok() && !answer.IsBusy() && (answer.Ok() || own.IsBusy())) answer = own;
}

void PutFontPart(IDispatch* font, std::wstring_view name, const Variant& value, HostAnswer& answer) {
  const HostAnswer own = PutProperty(font, name, value);
  if (!own.Ok()) PaneLog(Concat(L"Excel bilingual Font.", name, L" failed\r\n"));
  Keep(answer, own);
}

std::optional<std::int32_t> CaptureColor(IDispatch* font, std::int32_t row, std::int32_t col,
                                         HostAnswer& answer) {
  Variant color;
  answer.hr = GetProperty(font, L"Color", color, &answer.exceptionCode);
  if (answer.IsBusy()) return std::nullopt;
  const bool isNumber = color.Type() == VT_R8 || color.Type() == VT_I4 || color.Type() == VT_UI4;
  if (answer.Ok() && isNumber) return IntegerOf(color);
  PaneLog(Concat(L"CellStyleBaseline color unreadable row=", row, L" col=", col, L" vt=", color.Type(),
                 L" -> automatic\r\n"));
  return std::nullopt;
}

/// The font of a piece of the cell's text, or null (logged) with how the host refused.
ComPtr<IDispatch> FontOfPiece(IDispatch* cell, std::int32_t start, std::int32_t length, HostAnswer& answer) {
  const std::array<Variant, 2> piece = {Variant(start), Variant(length)};
  Variant characters;
  answer.hr = GetIndexedProperty(cell, L"Characters", piece, characters, &answer.exceptionCode);
  if (answer.hr == DISP_E_UNKNOWNNAME) {
    PaneLog(L"Excel bilingual Characters GetIDsOfNames failed\r\n");
    return nullptr;
  }
  ComPtr<IDispatch> font;
  if (answer.Ok()) font = GetDispProperty(characters.Object().Get(), L"Font", &answer);
  if (font == nullptr) PaneLog(L"Excel bilingual Characters failed (WPS may omit color)\r\n");
  return font;
}

/// The host's number for the automatic colour.
constexpr std::int32_t kColorIndexAutomatic = -4105;

bool Shows(IDispatch* object, const wchar_t* name, const Variant& wanted) {
  if (wanted.IsText()) return GetStringProperty(object, name) == wanted.Text();
  if (wanted.Type() == VT_BOOL) return GetFlagProperty(object, name) == wanted.IsTrue();
  const double number = wanted.Type() == VT_R8 ? wanted->dblVal : IntegerOf(wanted);
  return GetNumberProperty(object, name) == number;
}

/// Puts a value that is known and not shown already. The first refusal is kept in `answer`.
template <typename Value>
void PutBack(IDispatch* object, const wchar_t* name, const std::optional<Value>& known, HostAnswer& answer) {
  if (!known || answer.IsBusy() || Shows(object, name, Variant(*known))) return;
  Keep(answer, PutProperty(object, name, Variant(*known)));
}

void PutWrapBack(IDispatch* cell, const std::optional<bool>& wrap, HostAnswer& answer) {
  if (!wrap) return;
  PutBack(cell, L"WrapText", wrap, answer);
  const ComPtr<IDispatch> area = MergeAreaOf(cell);
  if (area != nullptr) PutBack(area.Get(), L"WrapText", wrap, answer);
}

bool IsEmpty(const BaselineFont& font) {
  return !font.name && !font.size && !font.bold && !font.color;
}

}  // namespace

BaselineFont CaptureBaselineFont(IDispatch* cell, std::int32_t row, std::int32_t col, HostAnswer& answer) {
  const ComPtr<IDispatch> font = GetDispProperty(cell, L"Font", &answer);
  if (answer.IsBusy()) return {};
  PaneLog(Concat(L"CellStyleBaseline capture row=", row, L" col=", col, L"\r\n"));
  BaselineFont baseline;
  Variant name;
  if (SUCCEEDED(GetProperty(font.Get(), L"Name", name)) && name.IsText()) baseline.name = name.Text();
  baseline.size = GetNumberProperty(font.Get(), L"Size");
  baseline.bold = GetFlagProperty(font.Get(), L"Bold");
  baseline.color = CaptureColor(font.Get(), row, col, answer);
  return baseline;
}

ComPtr<IDispatch> MergeAreaOf(IDispatch* cell) {
  if (!GetFlagProperty(cell, L"MergeCells").value_or(false)) return nullptr;
  return GetDispProperty(cell, L"MergeArea");
}

void WrapCellText(IDispatch* cell) {
  const Variant on(true);
  if (!PutProperty(cell, L"WrapText", on).Ok()) PaneLog(L"Excel bilingual WrapText failed\r\n");
  const ComPtr<IDispatch> area = MergeAreaOf(cell);
  if (area != nullptr && !PutProperty(area.Get(), L"WrapText", on).Ok()) {
    PaneLog(L"Excel bilingual MergeArea WrapText failed\r\n");
  }
}

HostAnswer StyleTranslation(IDispatch* cell, const BilingualValue& value, const TargetFont& font) {
  HostAnswer answer;
  const ComPtr<IDispatch> piece = FontOfPiece(cell, value.start, value.length, answer);
  if (piece == nullptr) return answer;
  PutFontPart(piece.Get(), L"Color", Variant(font.color), answer);
  if (font.bold) PutFontPart(piece.Get(), L"Bold", Variant(*font.bold), answer);
  if (font.name) PutFontPart(piece.Get(), L"Name", Variant(*font.name), answer);
  if (font.size) PutFontPart(piece.Get(), L"Size", Variant(*font.size), answer);
  return answer;
}

HostAnswer RestoreBaseline(IDispatch* cell, const BaselineFont& baseline) {
  HostAnswer answer;
  const ComPtr<IDispatch> font = GetDispProperty(cell, L"Font", &answer);
  if (font == nullptr && (answer.IsBusy() || !IsEmpty(baseline))) return answer;
  answer = {};
  if (font != nullptr) {
    const std::optional<std::int32_t> automatic =
        baseline.color ? std::nullopt : std::optional(kColorIndexAutomatic);
    PutBack(font.Get(), L"Name", baseline.name, answer);
    PutBack(font.Get(), L"Size", baseline.size, answer);
    PutBack(font.Get(), L"Bold", baseline.bold, answer);
    PutBack(font.Get(), L"Color", baseline.color, answer);
    PutBack(font.Get(), L"ColorIndex", automatic, answer);
  }
  PutWrapBack(cell, baseline.wrap, answer);
  return answer;
}

}  // namespace qv
