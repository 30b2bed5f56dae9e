#include "engines/memory/workbook_json.h"

#include <windows.h>
// Wants the header above first.
#include <wincrypt.h>

#include <algorithm>
#include <stdexcept>

#include "engines/memory/chart_objects.h"
#include "engines/memory/font_object.h"
#include "engines/memory/picture_file.h"
#include "engines/memory/shapes_object.h"
#include "foundation/text.h"
#include "tools/image_data.h"

namespace qv::devhost::memory {
namespace {

using nlohmann::json;

[[noreturn]] void Bad(const std::string& what) {
  throw std::runtime_error("workbook description: " + what);
}

std::wstring TextOf(const json& value) {
  return FromUtf8(value.get<std::string>());
}

Area OneArea(const std::string& address) {
  const auto areas = ParseAddress(FromUtf8(address));
  if (!areas || areas->size() != 1) Bad("not an address: " + address);
  return areas->front();
}

CellValue ValueFromJson(const json& value) {
  if (value.is_null()) return {};
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_number()) return value.get<double>();
  if (value.is_string()) return TextOf(value);
  Bad("a cell holds a text, a number, a boolean or null");
}

void ReadFont(const json& from, FontStyle& font) {
  font.bold = from.value("bold", font.bold);
  font.italic = from.value("italic", font.italic);
  font.size = from.value("size", font.size);
  if (from.contains("font")) font.name = TextOf(from.at("font"));
  if (from.contains("color")) {
    font.color = from.at("color").get<long>();
    font.automaticColor = false;
  }
}

void ReadStyle(const json& from, CellStyle& style) {
  ReadFont(from, style.font);
  style.wrap = from.value("wrap", style.wrap);
  style.locked = from.value("locked", style.locked);
  if (from.contains("format")) style.numberFormat = TextOf(from.at("format"));
  if (from.contains("fill")) {
    style.fillColor = from.at("fill").get<long>();
    style.fillPattern = 1;
  }
}

void ReadRuns(Sheet& sheet, const Area& at, const json& runs) {
  const Cell* cell = sheet.Find(at.row1, at.col1);
  const auto* text = cell == nullptr ? nullptr : std::get_if<std::wstring>(&cell->value);
  if (text == nullptr) Bad("runs need a text");
  std::vector<FontRun> all = RunsOf(*cell);
  for (const json& run : runs) {
    const size_t start = run.at("start").get<size_t>();
    if (start == 0) Bad("runs count from 1");
    all = ChangeRuns(all, start - 1, run.at("length").get<size_t>(), text->size(),
                     [&](FontStyle& font) { ReadFont(run, font); });
  }
  sheet.SetRuns(at.row1, at.col1, std::move(all));
}

void ReadCell(Sheet& sheet, const std::string& address, const json& cell) {
  const Area at = OneArea(address);
  if (at.Cells() != 1) Bad("not one cell: " + address);
  if (!cell.is_object()) {
    sheet.SetEntry(at.row1, at.col1, Entry{ValueFromJson(cell), L"", false, L""});
    return;
  }
  Entry entry;
  if (cell.contains("v")) entry.value = ValueFromJson(cell.at("v"));
  if (cell.contains("e")) entry.value = ErrorValue{cell.at("e").get<long>()};
  if (cell.contains("f")) entry.formula = TextOf(cell.at("f"));
  if (!entry.formula.empty() && entry.formula.front() != L'=') Bad("a formula begins with =");
  sheet.SetEntry(at.row1, at.col1, entry);
  CellStyle style;
  ReadStyle(cell, style);
  if (style != CellStyle()) sheet.ChangeStyle(at, [&](CellStyle& own) { own = style; });
  if (cell.contains("runs")) ReadRuns(sheet, at, cell.at("runs"));
}

void ReadChart(Sheet& sheet, const json& from) {
  const auto chart = AddChart(sheet, from.value("type", 51L), from.value("left", 0.0), from.value("top", 0.0),
                              from.value("width", 360.0), from.value("height", 216.0));
  if (from.contains("name")) chart->name = TextOf(from.at("name"));
  if (from.contains("title")) {
    chart->hasTitle = true;
    chart->title = TextOf(from.at("title"));
  }
}

void ReadPlace(const json& from, FloatingObject& object) {
  object.left = from.value("left", object.left);
  object.top = from.value("top", object.top);
  object.width = from.value("width", object.width);
  object.height = from.value("height", object.height);
  object.placement = from.value("placement", object.placement);
  if (from.contains("name")) object.name = TextOf(from.at("name"));
  if (from.contains("alt")) object.alternativeText = TextOf(from.at("alt"));
}

std::shared_ptr<const PictureData> PictureFromText(const std::wstring& base64) {
  const auto bytes = BytesOfBase64(base64);
  auto picture =
      bytes ? DecodePicture({reinterpret_cast<const char*>(bytes->data()), bytes->size()}) : nullptr;
  if (picture == nullptr) Bad("not a picture");
  return picture;
}

std::shared_ptr<Shape> ReadShape(const json& from) {
  constexpr double kPointsPerPixel = 0.75;
  auto shape = std::make_shared<Shape>();
  shape->type = from.value("type", shape->type);
  if (from.contains("png")) {
    shape->picture = PictureFromText(TextOf(from.at("png")));
    shape->width = shape->picture->width * kPointsPerPixel;
    shape->height = shape->picture->height * kPointsPerPixel;
  }
  ReadPlace(from, *shape);
  for (const json& child : from.value("children", json::array()))
    shape->children.push_back(ReadShape(child));
  return shape;
}

void AddReadShape(Sheet& sheet, const json& from) {
  const auto named = AddShape(sheet, from.value("type", 13L));
  const auto shape = ReadShape(from);
  shape->depth = named->depth;
  if (shape->name.empty()) shape->name = named->name;
  sheet.shapes.back() = shape;
}

std::shared_ptr<Sheet> ReadSheet(const json& from) {
  const auto sheet = std::make_shared<Sheet>(TextOf(from.at("name")));
  const json cells = from.value("cells", json::object());
  for (const auto& [address, cell] : cells.items())
    ReadCell(*sheet, address, cell);
  for (const json& merge : from.value("merges", json::array())) {
    if (!sheet->Merge(OneArea(merge.get<std::string>()))) Bad("a merge is too large");
  }
  const json heights = from.value("rowHeights", json::object());
  for (const auto& [row, height] : heights.items())
    sheet->SetRowHeight(OneArea(row + ":" + row).row1, height.get<double>());
  const json widths = from.value("columnWidths", json::object());
  for (const auto& [column, width] : widths.items())
    sheet->SetColumnWidth(OneArea(column + ":" + column).col1, width.get<double>());
  for (const json& chart : from.value("charts", json::array()))
    ReadChart(*sheet, chart);
  for (const json& shape : from.value("shapes", json::array()))
    AddReadShape(*sheet, shape);
  if (from.value("hidden", false)) sheet->visible = 0;
  sheet->isProtected = from.value("protected", false);
  sheet->frozenRows = from.value("frozenRows", 0L);
  sheet->frozenColumns = from.value("frozenColumns", 0L);
  return sheet;
}

std::string Base64Of(const std::string& bytes) {
  constexpr DWORD kForm = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
  const auto* const data = reinterpret_cast<const BYTE*>(bytes.data());
  const auto size = static_cast<DWORD>(bytes.size());
  // Counts the closing zero, which the second call does not.
  DWORD length = 0;
  if (!CryptBinaryToStringA(data, size, kForm, nullptr, &length)) return {};
  std::string text(length, '\0');
  if (!CryptBinaryToStringA(data, size, kForm, text.data(), &length)) return {};
  text.resize(length);
  return text;
}

void WriteFont(json& to, const FontStyle& font, const FontStyle& base) {
  if (font.bold != base.bold) to["bold"] = font.bold;
  if (font.italic != base.italic) to["italic"] = font.italic;
  if (font.size != base.size) to["size"] = font.size;
  if (font.name != base.name) to["font"] = ToUtf8(font.name);
  if (!font.automaticColor && font.color != base.color) to["color"] = font.color;
}

json WriteCell(const Cell& cell) {
  json to = json::object();
  if (const auto* error = std::get_if<ErrorValue>(&cell.value)) {
    to["e"] = error->number;
  } else if (cell.value.index() != 0) {
    to["v"] = ValueToJson(cell.value);
  }
  if (!cell.formula.empty()) to["f"] = ToUtf8(cell.formula);
  const CellStyle& style = cell.Style();
  const CellStyle base;
  WriteFont(to, style.font, base.font);
  if (style.wrap) to["wrap"] = true;
  if (!style.locked) to["locked"] = false;
  if (style.numberFormat != base.numberFormat) to["format"] = ToUtf8(style.numberFormat);
  if (style.fillPattern != kNone) to["fill"] = style.fillColor;
  const auto* text = std::get_if<std::wstring>(&cell.value);
  for (size_t i = 0; text != nullptr && i < cell.runs.size(); ++i) {
    const size_t end = i + 1 < cell.runs.size() ? cell.runs[i + 1].start : text->size();
    json run = {{"start", cell.runs[i].start + 1}, {"length", end - cell.runs[i].start}};
    WriteFont(run, cell.runs[i].font, style.font);
    to["runs"].push_back(std::move(run));
  }
  return to.size() == 1 && to.contains("v") ? to["v"] : to;
}

json WriteChart(const Chart& chart) {
  json to = {{"name", ToUtf8(chart.name)}, {"type", chart.type},   {"left", chart.left},
             {"top", chart.top},           {"width", chart.width}, {"height", chart.height}};
  if (chart.hasTitle) to["title"] = ToUtf8(chart.title);
  return to;
}

json WriteShape(const Shape& shape) {
  json to = {{"name", ToUtf8(shape.name)}, {"type", shape.type},   {"left", shape.left},
             {"top", shape.top},           {"width", shape.width}, {"height", shape.height}};
  if (!shape.alternativeText.empty()) to["alt"] = ToUtf8(shape.alternativeText);
  if (shape.placement != Shape().placement) to["placement"] = shape.placement;
  if (shape.picture != nullptr) to["png"] = Base64Of(EncodePicture(*shape.picture));
  for (const auto& child : shape.children)
    to["children"].push_back(WriteShape(*child));
  return to;
}

json WriteSheet(const Sheet& sheet) {
  json to = {{"name", ToUtf8(sheet.name)}, {"cells", json::object()}};
  sheet.ForEach(Area{1, 1, kMaxRow, kMaxColumn}, [&](long row, long col, const Cell& cell) {
    to["cells"][ToUtf8(FormatAddress({CellArea(row, col)}, false, false))] = WriteCell(cell);
    return true;
  });
  for (const Area& merge : sheet.Merges())
    to["merges"].push_back(ToUtf8(FormatAddress({merge}, false, false)));
  for (const auto& [row, height] : sheet.RowHeights())
    to["rowHeights"][std::to_string(row)] = height;
  for (const auto& [col, width] : sheet.ColumnWidths())
    to["columnWidths"][ToUtf8(ColumnLetters(col))] = width;
  for (const auto& chart : sheet.charts)
    to["charts"].push_back(WriteChart(*chart));
  for (const auto& shape : sheet.shapes)
    to["shapes"].push_back(WriteShape(*shape));
  if (sheet.visible != -1) to["hidden"] = true;
  if (sheet.isProtected) to["protected"] = true;
  if (sheet.frozenRows > 0) to["frozenRows"] = sheet.frozenRows;
  if (sheet.frozenColumns > 0) to["frozenColumns"] = sheet.frozenColumns;
  return to;
}

}  // namespace

std::vector<std::shared_ptr<Sheet>> SheetsFromJson(const json& description) {
  try {
    std::vector<std::shared_ptr<Sheet>> sheets;
    for (const json& sheet : description.at("sheets"))
      sheets.push_back(ReadSheet(sheet));
    if (sheets.empty()) Bad("no sheets");
    const bool anyVisible =
        std::any_of(sheets.begin(), sheets.end(), [](const auto& sheet) { return sheet->visible == -1; });
    if (!anyVisible) Bad("no visible sheet");
    return sheets;
  } catch (const json::exception& error) {
    Bad(error.what());
  }
}

json WorkbookToJson(const Workbook& workbook) {
  json to = json::object();
  if (workbook.readOnly) to["readOnly"] = true;
  for (const auto& sheet : workbook.sheets)
    to["sheets"].push_back(WriteSheet(*sheet));
  if (!workbook.windows.empty() && workbook.windows.front()->activeSheet != nullptr) {
    to["active"] = ToUtf8(workbook.windows.front()->activeSheet->name);
  }
  return to;
}

json RunsToJson(const Cell& cell, const std::wstring& text) {
  json runs = json::array();
  const std::vector<FontRun> all = RunsOf(cell);
  for (size_t i = 0; i < all.size(); ++i) {
    const size_t start = all[i].start;
    const size_t end = i + 1 < all.size() ? all[i + 1].start : text.size();
    if (start >= end) continue;
    const FontStyle& font = all[i].font;
    runs.push_back({{"start", start + 1},
                    {"length", end - start},
                    {"text", ToUtf8(std::wstring_view(text).substr(start, end - start))},
                    {"font", ToUtf8(font.name)},
                    {"size", font.size},
                    {"bold", font.bold},
                    {"italic", font.italic},
                    {"color", font.color}});
  }
  return runs;
}

json ValueToJson(const CellValue& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* flag = std::get_if<bool>(&value)) return *flag;
  if (const auto* text = std::get_if<std::wstring>(&value)) return ToUtf8(*text);
  if (const auto* error = std::get_if<ErrorValue>(&value)) return ToUtf8(ErrorWord(error->number));
  return nullptr;
}

}  // namespace qv::devhost::memory
