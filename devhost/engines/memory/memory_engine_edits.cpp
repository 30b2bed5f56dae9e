#include <stdexcept>

#include "engines/memory/engine_input.h"
#include "engines/memory/host_events.h"
#include "engines/memory/memory_engine.h"
#include "engines/memory/worksheet_object.h"
#include "foundation/text.h"

namespace qv::devhost {

void MemoryEngine::Select(const std::wstring& sheet, const std::string& address) {
  Changed();
  const auto found = FindSheet(sheet);
  const auto areas = AreasAt(address);
  OrThrow("select", [&] {
    memory::ActivateSheet(host_, found);
    memory::SelectAreas(host_, found, areas);
  });
}

void MemoryEngine::Protect(const std::wstring& sheet, bool on) {
  Changed();
  FindSheet(sheet)->isProtected = on;
}

void MemoryEngine::Type(const std::wstring& sheet, std::string_view address, const std::wstring& text) {
  const auto found = FindSheet(sheet);
  const memory::Area at = CellAt(address);
  OrThrow("type", [&] { host_->RequireWritable(*found, {at}); });
  const auto entry = memory::ParseEntry(text, found->StyleAt(at.row1, at.col1).numberFormat);
  if (!entry) throw std::runtime_error("type: the host refuses the text");
  Changed();
  found->SetEntry(at.row1, at.col1, *entry);
  memory::FireRangeEvent(host_, AppEvent::kSheetChange, found, {at});
}

void MemoryEngine::ActivateSheet(const std::wstring& sheet) {
  Changed();
  const auto found = FindSheet(sheet);
  OrThrow("activate", [&] { memory::ActivateSheet(host_, found); });
}

void MemoryEngine::InsertRows(const std::wstring& sheet, int row, int count) {
  const auto found = FindSheet(sheet);
  const memory::Area rows{row, 1, row + count - 1, memory::kMaxColumn};
  if (row < 1 || count < 1 || !memory::kWholeSheet.Contains(rows)) throw std::runtime_error("no such rows");
  if (found->isProtected || !found->InsertLines(true, row, count))
    throw std::runtime_error("insert rows: the host refuses");
  Changed();
  memory::FireRangeEvent(host_, AppEvent::kSheetChange, found, {rows});
}

void MemoryEngine::RenameSheet(const std::wstring& sheet, const std::wstring& name) {
  const auto found = FindSheet(sheet);
  OrThrow("rename", [&] { memory::RenameSheet(*found, name); });
  Changed();
}

void MemoryEngine::DeleteSheet(const std::wstring& sheet) {
  const auto found = FindSheet(sheet);
  OrThrow("delete", [&] { memory::RequireDeletable(*found); });
  Changed();
  const auto window = memory::FrontWindowOf(*host_, *found);
  const bool wasActive = window->activeSheet == found;
  if (wasActive) memory::FireSheetEvent(host_, AppEvent::kSheetDeactivate, found);
  host_->DeleteSheet(found);
  if (wasActive) memory::FireSheetEvent(host_, AppEvent::kSheetActivate, window->activeSheet);
}

}  // namespace qv::devhost
