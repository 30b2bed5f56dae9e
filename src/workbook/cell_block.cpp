#include "workbook/cell_block.h"

#include <optional>
#include <utility>

#include "foundation/text.h"
#include "workbook/cell_access.h"
#include "workbook/cell_text.h"
#include "workbook/value_block.h"

namespace qv {
namespace {

/// The upper half of the codes of error values.
constexpr std::uint32_t kErrorFacility = 0x800A0000;

std::size_t CellCount(const RangeGeometry& block) {
  return static_cast<std::size_t>(block.Cells());
}

bool IsUnreadable(const Variant& value) {
  return value.Type() == VT_ERROR && value->scode == DISP_E_PARAMNOTFOUND;
}

/// False when the answer is not one value a cell.
bool TakeAnswer(const Variant& answer, const RangeGeometry& block, std::vector<Variant>& values) {
  if (!answer.IsArray()) {
    // For several cells a single value says nothing about each.
    if (block.Cells() == 1) values.push_back(answer);
    return block.Cells() == 1;
  }
  const std::optional<ValueBlock> array = ValueBlock::Of(answer);
  if (!array) return false;
  Variant held;
  for (std::int32_t row = 1; row <= block.rows; ++row) {
    for (std::int32_t col = 1; col <= block.cols; ++col) {
      const VARIANT* const element = array->Read(row, col, held);
      if (element == nullptr) return false;
      values.emplace_back(*element);
    }
  }
  return true;
}

HostAnswer ReadSingly(IDispatch* sheet, const RangeGeometry& block, const wchar_t* property,
                      std::vector<Variant>& values) {
  HostAnswer failure{E_FAIL, 0};
  bool anyRead = false;
  for (std::int32_t row = 0; row < block.rows; ++row) {
    for (std::int32_t col = 0; col < block.cols; ++col) {
      HostAnswer answer;
      const ComPtr<IDispatch> cell =
          GetCellDispatch(sheet, block.firstRow + row, block.firstCol + col, &answer);
      Variant value;
      if (cell != nullptr) answer.hr = GetProperty(cell.Get(), property, value, &answer.exceptionCode);
      if (answer.IsBusy()) return answer;
      if (answer.Ok()) {
        anyRead = true;
      } else {
        failure = answer;
      }
      values.push_back(answer.Ok() ? std::move(value) : Variant::Missing());
    }
  }
  return anyRead ? HostAnswer{} : failure;
}

}  // namespace

ComPtr<IDispatch> GetBlockRange(IDispatch* sheet, const RangeGeometry& block, HostAnswer* answer) {
  const Variant address(
      Concat(A1Address(block.firstRow, block.firstCol), L':',
             A1Address(block.firstRow + (block.rows - 1), block.firstCol + (block.cols - 1))));
  Variant value;
  HostAnswer own;
  own.hr = GetIndexedProperty(sheet, L"Range", {&address, 1}, value, &own.exceptionCode);
  ComPtr<IDispatch> range = own.Ok() ? value.Object() : nullptr;
  if (range == nullptr && own.Ok()) own.hr = E_FAIL;
  if (answer != nullptr) *answer = own;
  return range;
}

HostAnswer ReadBlock(IDispatch* sheet, const RangeGeometry& block, const wchar_t* property,
                     std::vector<Variant>& values) {
  HostAnswer answer;
  const ComPtr<IDispatch> range = GetBlockRange(sheet, block, &answer);
  // Without the rectangle there are no cells of it either.
  if (range == nullptr) return answer;
  Variant value;
  answer.hr = GetProperty(range.Get(), property, value, &answer.exceptionCode);
  if (answer.IsBusy()) return answer;
  values.clear();
  values.reserve(CellCount(block));
  if (answer.Ok() && TakeAnswer(value, block, values)) return answer;
  values.clear();
  return ReadSingly(sheet, block, property, values);
}

CellContent CellReading::Content() const {
  return isText || formula.empty() ? CellContent{text, kind}
                                   : CellContent{formula, CellContentKind::kFormula};
}

CellReading ReadingOf(const Variant& value) {
  CellReading reading;
  const auto set = [&](std::wstring text, CellContentKind kind) {
    reading.text = std::move(text);
    reading.kind = kind;
  };
  const auto isErrorCode = [](long code) {
    return (static_cast<std::uint32_t>(code) & 0xFFFF0000) == kErrorFacility;
  };
  switch (value.Type()) {
    case VT_EMPTY:
    case VT_NULL:
      break;
    case VT_BSTR:
      set(value.Text(), CellContentKind::kText);
      break;
    case VT_BOOL:
      set(value.IsTrue() ? L"TRUE" : L"FALSE", CellContentKind::kFlag);
      break;
    case VT_ERROR:
      reading.isReadable = !IsUnreadable(value);
      if (reading.isReadable) set(std::wstring(ErrorWord(value->scode)), CellContentKind::kTyped);
      break;
    default: {
      // Some hosts give errors as plain integers.
      if (value.Type() == VT_I4 && isErrorCode(value->lVal)) {
        set(std::wstring(ErrorWord(value->lVal)), CellContentKind::kTyped);
        break;
      }
      Variant number(value);
      reading.isReadable = SUCCEEDED(VariantChangeType(&number.Get(), &number.Get(), 0, VT_R8));
      if (reading.isReadable) set(NumberText(number->dblVal), CellContentKind::kNumber);
    }
  }
  return reading;
}

HostAnswer ReadCells(IDispatch* sheet, const RangeGeometry& block, std::vector<CellReading>& cells) {
  std::vector<Variant> values;
  std::vector<Variant> formulas;
  const HostAnswer answer = ReadBlock(sheet, block, L"Value2", values);
  if (!answer.Ok()) return answer;
  const HostAnswer second = ReadBlock(sheet, block, L"Formula", formulas);
  if (!second.Ok()) return second;
  cells.clear();
  cells.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    CellReading& cell = cells.emplace_back(ReadingOf(values[i]));
    std::wstring formula = formulas[i].Text();
    // A text may begin with "=" too; only then do formula and value say the same.
    cell.isText = values[i].IsText() && values[i].Text() == formula;
    if (IsFormulaText(formula)) cell.formula = std::move(formula);
    if (IsUnreadable(formulas[i])) cell.isReadable = false;
  }
  return answer;
}

bool IsEmptyValue(const Variant& value) {
  return value.Type() == VT_EMPTY || value.Type() == VT_NULL || IsUnreadable(value) ||
         (value.IsText() && SysStringLen(value->bstrVal) == 0);
}

}  // namespace qv
