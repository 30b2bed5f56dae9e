#include "workbook/workbook_busy_table.h"

#include <cstdint>
#include <map>
#include <mutex>

#include "foundation/logging.h"
#include "foundation/text.h"

namespace qv {
namespace {

struct Owners {
  std::mutex mutex;
  std::map<std::wstring, const void*> byKey;
};

Owners& Table() {
  static Owners owners;
  return owners;
}

Hex Address(const void* pointer) {
  return Hex{reinterpret_cast<std::uintptr_t>(pointer), 16, true};
}

}  // namespace

bool WorkbookBusyTable::TryClaimWorkbook(const std::wstring& workbookKey, const void* owner) {
  if (workbookKey.empty()) return true;
  const void* holder = nullptr;
  {
    Owners& owners = Table();
    const std::scoped_lock lock(owners.mutex);
    holder = owners.byKey.try_emplace(workbookKey, owner).first->second;
  }
  if (holder == owner) return true;
  PaneLog(Concat(L"Excel workbook busy key=", workbookKey, L" owner=", Address(holder), L" this=",
                 Address(owner), L"\r\n"));
  return false;
}

bool WorkbookBusyTable::IsClaimed(const std::wstring& workbookKey) {
  Owners& owners = Table();
  const std::scoped_lock lock(owners.mutex);
  return owners.byKey.contains(workbookKey);
}

void WorkbookBusyTable::ReleaseWorkbook(const std::wstring& workbookKey, const void* owner) {
  Owners& owners = Table();
  const std::scoped_lock lock(owners.mutex);
  const auto entry = owners.byKey.find(workbookKey);
  if (entry != owners.byKey.end() && entry->second == owner) owners.byKey.erase(entry);
}

}  // namespace qv
