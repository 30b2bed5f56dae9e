#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "engines/memory/host_events.h"
#include "engines/memory/range_object.h"

namespace qv::devhost::memory {
namespace {

/// VT_ERROR codes are this plus the error's number.
constexpr std::uint32_t kErrorBase = 0x800A0000;
constexpr long kNotAvailable = 2042;
/// Larger reads run out of memory in the host as well.
constexpr long long kMaxArrayCells = 20'000'000;

/// Owner of a SAFEARRAY of VARIANTs with two dimensions, both counted from 1, whose elements are written in
/// place.
class VariantMatrix {
 public:
  VariantMatrix(long rows, long columns) : rows_(static_cast<size_t>(rows)) {
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    if (array == nullptr) throw HostError{E_OUTOFMEMORY};
    VARIANT* const out = holder_.Put();
    out->vt = VT_ARRAY | VT_VARIANT;
    out->parray = array;
    data_ = static_cast<VARIANT*>(array->pvData);
  }

  /// 0-based; rows lie next to each other in memory. The element still is VT_EMPTY.
  VARIANT& At(long row, long col) {
    return data_[static_cast<size_t>(row) + static_cast<size_t>(col) * rows_];
  }
  [[nodiscard]] Variant Take() { return std::move(holder_); }

 private:
  Variant holder_;
  size_t rows_;
  VARIANT* data_ = nullptr;
};

Variant ErrorVariant(long number, bool wps) {
  const auto code = static_cast<std::int32_t>(kErrorBase + static_cast<std::uint32_t>(number));
  Variant error;
  VARIANT* const out = error.Put();
  out->vt = wps ? VT_I4 : VT_ERROR;
  // What lies beside the code is no part of the value, and never the same.
  static std::int64_t leftOver = 0;
  out->llVal = ++leftOver << 32;
  out->lVal = code;
  return error;
}

Variant ValueVariant(const CellValue& value, bool wps) {
  if (const auto* text = std::get_if<std::wstring>(&value)) return Variant(std::wstring_view(*text));
  if (const auto* number = std::get_if<double>(&value)) return Variant(*number);
  if (const auto* flag = std::get_if<bool>(&value)) return Variant(*flag);
  if (const auto* error = std::get_if<ErrorValue>(&value)) return ErrorVariant(error->number, wps);
  return {};
}

Variant FormulaVariant(const Cell& cell) {
  if (!cell.formula.empty()) return Variant(cell.formula);
  // The number as typed, not as shown.
  if (const auto* number = std::get_if<double>(&cell.value)) return Variant(NumberText(*number, 15));
  return Variant(DisplayText(cell.value, L"General"));
}

/// A number that its column is too narrow for is rounded in the general format, else a row of '#'.
std::wstring TextInColumn(const Cell& cell, double columnWidth) {
  const std::wstring_view format = cell.Style().numberFormat;
  std::wstring text = DisplayText(cell.value, format);
  const auto room = static_cast<size_t>(columnWidth);
  const auto* const number = std::get_if<double>(&cell.value);
  if (number == nullptr) return text;
  for (int digits = 10; format == L"General" && text.size() > room && digits > 0; --digits)
    text = NumberText(*number, digits);
  return text.size() > room ? std::wstring(room, L'#') : text;
}

Variant DateVariant(double serial) {
  Variant date;
  VARIANT* const out = date.Put();
  out->vt = VT_DATE;
  out->date = serial;
  return date;
}

Entry EntryOfNumber(double number, const wchar_t* numberFormat = L"") {
  return Entry{number, L"", false, numberFormat};
}

/// What the host stores for a value that is put; refused for what a cell cannot hold.
Entry EntryOf(const VARIANT& value, const CellStyle& style) {
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return Entry{};
    case VT_BSTR: {
      auto entry = ParseEntry(ToText(value), style.numberFormat);
      if (!entry) Refuse();
      return std::move(*entry);
    }
    case VT_BOOL:
      return Entry{value.boolVal != VARIANT_FALSE, L"", false, L""};
    case VT_DATE:
      return EntryOfNumber(value.date, L"m/d/yyyy");
    case VT_ERROR:
      if (value.scode == DISP_E_PARAMNOTFOUND) return Entry{};
      return Entry{ErrorValue{static_cast<long>(static_cast<std::uint32_t>(value.scode) - kErrorBase)}, L"",
                   false, L""};
    case VT_DISPATCH: {
      const auto* range = dynamic_cast<RangeObject*>(NativeObject(&value));
      if (range == nullptr) throw HostError{DISP_E_TYPEMISMATCH};
      const Area& area = range->Areas().front();
      const Cell* cell = range->GetSheet()->Find(area.row1, area.col1);
      return cell == nullptr ? Entry{} : Entry{cell->value, L"", false, L""};
    }
    default:
      return EntryOfNumber(ToDouble(value));
  }
}

/// Rows and columns of the array that is put; one dimension is one row.
struct ArrayShape {
  UINT dimensions = 0;
  LONG firstRow = 0;
  LONG rows = 1;
  LONG firstColumn = 0;
  LONG columns = 0;
};

ArrayShape ShapeOf(SAFEARRAY* array) {
  ArrayShape shape{SafeArrayGetDim(array)};
  if (shape.dimensions < 1 || shape.dimensions > 2) Refuse();
  LONG upper = 0;
  if (FAILED(SafeArrayGetLBound(array, shape.dimensions, &shape.firstColumn)) ||
      FAILED(SafeArrayGetUBound(array, shape.dimensions, &upper))) {
    Refuse();
  }
  shape.columns = upper - shape.firstColumn + 1;
  if (shape.dimensions == 1) return shape;
  if (FAILED(SafeArrayGetLBound(array, 1, &shape.firstRow)) || FAILED(SafeArrayGetUBound(array, 1, &upper))) {
    Refuse();
  }
  shape.rows = upper - shape.firstRow + 1;
  return shape;
}

Variant ElementOf(SAFEARRAY* array, const ArrayShape& shape, long row, long col) {
  VARTYPE type = VT_EMPTY;
  if (FAILED(SafeArrayGetVartype(array, &type))) Refuse();
  LONG index[2] = {shape.firstRow + row, shape.firstColumn + col};
  LONG* const at = shape.dimensions == 1 ? &index[1] : index;
  Variant element;
  VARIANT* const out = element.Put();
  // An element is copied to where the type keeps it: a VARIANT as a whole, anything else into its value
  // field.
  void* const target = type == VT_VARIANT ? static_cast<void*>(out) : static_cast<void*>(&out->llVal);
  if (FAILED(SafeArrayGetElement(array, at, target))) Refuse();
  if (type != VT_VARIANT) out->vt = type;
  return element;
}

}  // namespace

Variant RangeObject::Default(Call& call) {
  if (call.Count() > 0) return Item(call);
  return AccessContent(call, Content::kValue);
}

Variant RangeObject::Value(Call& call) {
  return AccessContent(call, Content::kValue);
}
Variant RangeObject::Value2(Call& call) {
  return AccessContent(call, Content::kValue2);
}
Variant RangeObject::Formula(Call& call) {
  return AccessContent(call, Content::kFormula);
}

Variant RangeObject::AccessContent(Call& call, Content content) {
  Faults& faults = GetHost().faults;
  const bool bulk = First().Cells() > 1;
  if (!call.IsPut()) {
    if (bulk && TakeOne(faults.failBulkGets)) Refuse();
    return ReadContent(content);
  }
  if (bulk && TakeOne(faults.failBulkPuts)) Refuse();
  PutContent(call.Value());
  return {};
}

Variant RangeObject::ContentOf(const Cell& cell, Content content) const {
  if (content == Content::kFormula) return FormulaVariant(cell);
  const auto* number = std::get_if<double>(&cell.value);
  if (number != nullptr && content == Content::kValue && IsDateFormat(cell.Style().numberFormat)) {
    return DateVariant(*number);
  }
  return ValueVariant(cell.value, GetHost().isWps);
}

Variant RangeObject::ReadContent(Content content) const {
  const Area& area = First();
  if (area.Cells() == 1) {
    const Cell* cell = sheet_->Find(area.row1, area.col1);
    return ContentOf(cell == nullptr ? Cell{} : *cell, content);
  }
  if (area.Cells() > kMaxArrayCells) throw HostError{E_OUTOFMEMORY};
  VariantMatrix matrix(area.Rows(), area.Columns());
  if (content == Content::kFormula) {
    for (long row = 0; row < area.Rows(); ++row) {
      for (long col = 0; col < area.Columns(); ++col)
        matrix.At(row, col) = Variant(L"").Detach();
    }
  }
  sheet_->ForEach(area, [&](long row, long col, const Cell& cell) {
    VARIANT& element = matrix.At(row - area.row1, col - area.col1);
    if (content == Content::kFormula) VariantClear(&element);
    element = ContentOf(cell, content).Detach();
    return true;
  });
  return matrix.Take();
}

void RangeObject::PutContent(const VARIANT& value) {
  GetHost().RequireWritable(*sheet_, areas_);
  if ((value.vt & VT_ARRAY) != 0) {
    PutArray(value);
  } else if ((value.vt & VT_BYREF) != 0) {
    PutScalar(Variant(value).Get());
  } else {
    PutScalar(value);
  }
  if (const auto workbook = sheet_->workbook.lock()) workbook->saved = false;
  FireRangeEvent(SharedHost(), AppEvent::kSheetChange, sheet_, areas_);
}

void RangeObject::PutScalar(const VARIANT& value) {
  for (const Area& area : areas_) {
    const auto part = area.IsWholeRows() || area.IsWholeColumns() ? Intersect(area, sheet_->UsedArea())
                                                                  : std::optional(area);
    if (!part) continue;
    for (long row = part->row1; row <= part->row2; ++row) {
      for (long col = part->col1; col <= part->col2; ++col)
        sheet_->SetEntry(row, col, EntryOf(value, sheet_->StyleAt(row, col)));
    }
  }
}

void RangeObject::PutArray(const VARIANT& value) {
  SAFEARRAY* const array = (value.vt & VT_BYREF) != 0 ? *value.pparray : value.parray;
  if (array == nullptr) throw HostError{DISP_E_TYPEMISMATCH};
  const ArrayShape shape = ShapeOf(array);
  // All is read before anything is written: a refused element refuses the whole put.
  std::vector<std::pair<Area, Entry>> entries;
  for (const Area& area : areas_) {
    if (area.Cells() > kMaxArrayCells) throw HostError{E_OUTOFMEMORY};
    for (long row = 0; row < area.Rows(); ++row) {
      for (long col = 0; col < area.Columns(); ++col) {
        const Area cell = CellArea(area.row1 + row, area.col1 + col);
        const long sourceRow = shape.rows == 1 ? 0 : row;
        const long sourceColumn = shape.columns == 1 ? 0 : col;
        if (sourceRow >= shape.rows || sourceColumn >= shape.columns) {
          entries.emplace_back(cell, Entry{ErrorValue{kNotAvailable}, L"", false, L""});
          continue;
        }
        const Variant element = ElementOf(array, shape, sourceRow, sourceColumn);
        entries.emplace_back(cell, EntryOf(element.Get(), sheet_->StyleAt(cell.row1, cell.col1)));
      }
    }
  }
  for (const auto& [cell, entry] : entries)
    sheet_->SetEntry(cell.row1, cell.col1, entry);
}

bool RangeObject::AnswersArray() const {
  return GetHost().faults.arrayAnswers && First().Cells() > 1;
}

Variant RangeObject::FlagArray(bool (*flag)(const Sheet& sheet, long row, long col)) const {
  const Area& area = First();
  VariantMatrix matrix(area.Rows(), area.Columns());
  for (long row = 0; row < area.Rows(); ++row) {
    for (long col = 0; col < area.Columns(); ++col)
      matrix.At(row, col) = Variant(flag(*sheet_, area.row1 + row, area.col1 + col)).Detach();
  }
  return matrix.Take();
}

Variant RangeObject::HasFormula(Call&) {
  if (AnswersArray()) {
    return FlagArray([](const Sheet& sheet, long row, long col) { return sheet.HasFormula(row, col); });
  }
  long long formulas = 0;
  long long cells = 0;
  for (const Area& area : areas_) {
    cells += area.Cells();
    formulas += sheet_->CountFormulas(area, area.Cells());
  }
  if (formulas == 0) return Variant(false);
  if (formulas == cells) return Variant(true);
  Variant mixed;
  mixed.Put()->vt = VT_NULL;
  return mixed;
}

Variant RangeObject::Text(Call&) {
  std::optional<std::wstring> common;
  const auto textAt = [&](long row, long col) {
    const Cell* cell = sheet_->Find(row, col);
    return cell == nullptr ? std::wstring() : TextInColumn(*cell, sheet_->ColumnWidth(col));
  };
  if (IsOneCell()) return Variant(textAt(First().row1, First().col1));
  Variant mixed;
  mixed.Put()->vt = VT_NULL;
  if (First().Cells() > kMaxArrayCells) return mixed;
  for (long row = First().row1; row <= First().row2; ++row) {
    for (long col = First().col1; col <= First().col2; ++col) {
      std::wstring text = textAt(row, col);
      if (common && *common != text) return mixed;
      common = std::move(text);
    }
  }
  return Variant(*common);
}

Variant RangeObject::ClearContents(Call&) {
  GetHost().RequireWritable(*sheet_, areas_);
  for (const Area& area : areas_)
    sheet_->ClearContents(area);
  FireRangeEvent(SharedHost(), AppEvent::kSheetChange, sheet_, areas_);
  return Variant(true);
}

}  // namespace qv::devhost::memory
