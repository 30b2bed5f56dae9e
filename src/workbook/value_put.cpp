#include "workbook/value_put.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

#include "foundation/logging.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// Older hosts refuse an array with a longer text (documented), which they take alone.
constexpr std::size_t kMaxElementText = 911;

/// A two-dimensional array counted from 1, as the host itself gives it.
Variant ArrayOf(const RangeGeometry& block, const std::vector<const CellContent*>& contents) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(block.rows), 1}, {static_cast<ULONG>(block.cols), 1}};
  SAFEARRAY* const array = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (array == nullptr) throw std::bad_alloc();
  Variant result;
  VARIANT* const out = result.Put();
  out->vt = VT_ARRAY | VT_VARIANT;
  out->parray = array;
  for (std::size_t i = 0; i < contents.size(); ++i) {
    const auto columns = static_cast<std::size_t>(block.cols);
    LONG indexes[] = {static_cast<LONG>(i / columns) + 1, static_cast<LONG>(i % columns) + 1};
    Variant element = ValueOf(*contents[i]);
    if (FAILED(SafeArrayPutElement(array, indexes, &element.Get()))) throw std::bad_alloc();
  }
  return result;
}

}  // namespace

Variant ValueOf(const CellContent& content) {
  if (content.kind == CellContentKind::kNumber) return Variant(NumberOfText(content.text));
  if (content.kind == CellContentKind::kFlag) return Variant(content.text == L"TRUE");
  return content.text.empty() ? Variant() : Variant(content.text);
}

HostAnswer PutValue(IDispatch* cells, const Variant& value) {
  HostAnswer answer;
  for (const wchar_t* name : {L"Value2", L"Value"}) {
    answer.hr = PutDispProperty(cells, name, &value, &answer.exceptionCode);
    if (answer.Ok() || answer.IsBusy()) break;
  }
  return answer;
}

bool FitsIntoArray(const CellContent& content) {
  if (content.kind == CellContentKind::kNumber || content.kind == CellContentKind::kFlag) return true;
  if (content.text.empty()) return true;
  return content.kind == CellContentKind::kTyped && content.text.size() <= kMaxElementText &&
         std::wstring_view(L"=+-@'").find(content.text.front()) == std::wstring_view::npos;
}

bool HasHiddenRows(IDispatch* range) {
  const ComPtr<IDispatch> rows = GetDispProperty(range, L"EntireRow");
  Variant hidden;
  // Neither TRUE nor FALSE for rows that differ.
  return rows != nullptr && SUCCEEDED(GetProperty(rows.Get(), L"Hidden", hidden)) &&
         (hidden.Type() != VT_BOOL || hidden.IsTrue());
}

HostAnswer PutBlock(IDispatch* range, std::wstring_view sheetName, const RangeGeometry& block,
                    const std::vector<const CellContent*>& contents) {
  const HostAnswer answer = PutValue(range, ArrayOf(block, contents));
  const std::wstring failure = answer.Ok() ? std::wstring() : Concat(L" hr=0x", Hex8(answer.hr));
  PaneLog(Concat(L"Excel PutBlock ", answer.Ok() ? L"ok" : L"failed", L" sheet=", sheetName, L" row=",
                 block.firstRow, L" col=", block.firstCol, L" rows=", block.rows, L" cols=", block.cols,
                 failure, L"\r\n"));
  return answer;
}

}  // namespace qv
