#include "tools/block_writer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "workbook/automation.h"
#include "workbook/number_formats.h"
#include "workbook/value_put.h"

namespace qv {
namespace {

/// The formats before the write, of the cells whose format may change.
std::vector<std::wstring> FormerFormats(IDispatch* sheet, const BlockWrite& write,
                                        const std::vector<bool>& watched) {
  if (write.formerFormat.empty()) return ReadNumberFormats(sheet, write.block, watched);
  return std::vector<std::wstring>(watched.size(), write.formerFormat);
}

void AppendRecords(const ToolContext& context, const ToolSheet& sheet, const UndoBook& book,
                   const BlockWrite& write) {
  const auto columns = static_cast<std::size_t>(write.block.cols);
  for (std::size_t i = 0; i < write.former.size(); ++i) {
    const std::int32_t row = write.block.firstRow + static_cast<std::int32_t>(i / columns);
    const std::int32_t col = write.block.firstCol + static_cast<std::int32_t>(i % columns);
    context.undo.Append({row, col, sheet.name, write.former[i]->Content(), book, std::nullopt});
  }
}

/// Whether all cells still hold what they held. One that cannot be read any more says no.
bool IsUnchanged(IDispatch* sheet, const BlockWrite& write) {
  std::vector<CellReading> now;
  return ReadCells(sheet, write.block, now).Ok() &&
         std::ranges::equal(now, write.former, [](const CellReading& cell, const CellReading* former) {
           return cell.isReadable && cell.Content() == former->Content();
         });
}

}  // namespace

bool MayChangeFormat(const CellContent& content) {
  return content.kind == CellContentKind::kFormula ||
         (content.kind == CellContentKind::kTyped &&
          content.text.find_first_of(L"0123456789") != std::wstring::npos);
}

bool WriteBlock(const ToolContext& context, const ToolSheet& sheet, const UndoBook& book,
                const BlockWrite& write) {
  const ComPtr<IDispatch> range = GetBlockRange(sheet.sheet.Get(), write.block);
  if (range == nullptr || HasHiddenRows(range.Get())) return false;
  std::vector<bool> watched;
  for (const CellContent* content : write.contents)
    watched.push_back(MayChangeFormat(*content));
  const std::vector<std::wstring> former = FormerFormats(sheet.sheet.Get(), write, watched);
  AppendRecords(context, sheet, book, write);
  const HostAnswer answer = PutBlock(range.Get(), sheet.name, write.block, write.contents);
  if (!answer.Ok()) {
    if (answer.IsBusy() || IsUnchanged(sheet.sheet.Get(), write))
      context.undo.DropNewest(write.former.size());
    return false;
  }
  const std::vector<std::wstring> written = ReadNumberFormats(sheet.sheet.Get(), write.block, watched);
  const std::span<UndoRecord> records = context.undo.Newest(written.size());
  for (std::size_t i = 0; i < written.size(); ++i) {
    if (former[i].empty() || written[i].empty() || former[i] == written[i]) continue;
    records[i].format = UndoFormat{former[i], written[i]};
  }
  return true;
}

}  // namespace qv
