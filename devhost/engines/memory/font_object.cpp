#include "engines/memory/font_object.h"

#include <algorithm>

#include "engines/memory/style_access.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {

void RangeFont::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

std::optional<StyleValue> RangeFont::Read(const StyleProperty<FontStyle>& property) const {
  Uniform uniform;
  ForEachStyle(*sheet_, areas_, [&](const CellStyle& style, const Cell* cell) {
    if (cell == nullptr || cell->runs.empty()) return uniform.Add(property.read(style.font));
    return std::all_of(cell->runs.begin(), cell->runs.end(),
                       [&](const FontRun& run) { return uniform.Add(property.read(run.font)); });
  });
  return uniform.Result();
}

void RangeFont::Write(const StyleProperty<FontStyle>& property, const StyleValue& value) {
  Host::RequireFormattable(*sheet_);
  const auto change = [&](FontStyle& font) { static_cast<void>(property.write(font, value)); };
  struct Styled {
    long row;
    long col;
    std::vector<FontRun> runs;
  };
  std::vector<Styled> styled;
  for (const Area& area : areas_) {
    sheet_->ChangeStyle(area, [&](CellStyle& style) { change(style.font); });
    sheet_->ForEach(area, [&](long row, long col, const Cell& cell) {
      if (!cell.runs.empty()) styled.push_back({row, col, cell.runs});
      return true;
    });
  }
  for (Styled& cell : styled) {
    const size_t all = static_cast<size_t>(-1) / 2;
    auto runs = ChangeRuns(cell.runs, 0, all, all, change);
    if (runs.size() == 1) {
      sheet_->ChangeStyle(CellArea(cell.row, cell.col), [&](CellStyle& style) { style.font = runs[0].font; });
      runs.clear();
    }
    sheet_->SetRuns(cell.row, cell.col, std::move(runs));
  }
}

void TextPartFont::RequireAlive() const {
  RequireAliveSheet(*sheet_);
}

std::optional<StyleValue> TextPartFont::Read(const StyleProperty<FontStyle>& property) const {
  const Cell* cell = sheet_->Find(row_, col_);
  if (cell == nullptr || cell->runs.empty()) return property.read(sheet_->StyleAt(row_, col_).font);
  Uniform uniform;
  for (size_t i = 0; i < cell->runs.size(); ++i) {
    const bool last = i + 1 == cell->runs.size();
    const bool before = !last && cell->runs[i + 1].start <= start_;
    const bool after = cell->runs[i].start >= start_ + length_;
    if (!before && !after) uniform.Add(property.read(cell->runs[i].font));
  }
  return uniform.Result();
}

void TextPartFont::Write(const StyleProperty<FontStyle>& property, const StyleValue& value) {
  Host::RequireFormattable(*sheet_);
  const Cell* cell = sheet_->Find(row_, col_);
  const auto* text = cell == nullptr ? nullptr : std::get_if<std::wstring>(&cell->value);
  // Only constant texts have parts.
  if (text == nullptr || !cell->formula.empty()) Refuse();
  auto runs = ChangeRuns(RunsOf(*cell), start_, length_, text->size(),
                         [&](FontStyle& font) { static_cast<void>(property.write(font, value)); });
  if (runs.size() == 1) {
    sheet_->ChangeStyle(CellArea(row_, col_), [&](CellStyle& style) { style.font = runs[0].font; });
    runs.clear();
  }
  sheet_->SetRuns(row_, col_, std::move(runs));
}

void ChartTitleFont::RequireAlive() const {
  if (chart_->deleted || !chart_->hasTitle) throw HostError{RPC_E_DISCONNECTED};
}

std::optional<StyleValue> ChartTitleFont::Read(const StyleProperty<FontStyle>& property) const {
  return property.read(chart_->titleFont);
}

void ChartTitleFont::Write(const StyleProperty<FontStyle>& property, const StyleValue& value) {
  static_cast<void>(property.write(chart_->titleFont, value));
}

const ClassInfo& FontObject::Class() const {
  using F = FontObject;
  static const ClassInfo info("Font", {
                                          {L"Name", kGet | kPut, Do<&F::Access<kFontName>>},
                                          {L"Size", kGet | kPut, Do<&F::Access<kFontSize>>},
                                          {L"Bold", kGet | kPut, Do<&F::Access<kFontBold>>},
                                          {L"Italic", kGet | kPut, Do<&F::Access<kFontItalic>>},
                                          {L"Underline", kGet | kPut, Do<&F::Access<kFontUnderline>>},
                                          {L"Strikethrough", kGet | kPut, Do<&F::Access<kFontStrikethrough>>},
                                          {L"Color", kGet | kPut, Do<&F::Access<kFontColor>>},
                                          {L"ColorIndex", kGet | kPut, Do<&F::Access<kFontColorIndex>>},
                                          {L"Application", kGet, Do<&F::Application>},
                                      });
  return info;
}

Variant FontObject::AccessProperty(const StyleProperty<FontStyle>& property, Call& call) {
  if (!call.IsPut()) return StyleVariant(target_->Read(property));
  const StyleValue value = StyleValueOf(call.Value());
  FontStyle probe;
  if (!property.write(probe, value)) Refuse();
  target_->Write(property, value);
  return {};
}

std::vector<FontRun> RunsOf(const Cell& cell) {
  return cell.runs.empty() ? std::vector{FontRun{0, cell.Style().font}} : cell.runs;
}

}  // namespace qv::devhost::memory
