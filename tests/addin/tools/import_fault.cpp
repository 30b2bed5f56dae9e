#include "addin/tools/import_fault.h"

#include <gtest/gtest.h>

#include <string_view>

namespace qv::test {
namespace {

/// The program's own headers and tables, by their offset.
template <typename Type>
Type* At(DWORD offset) {
  return reinterpret_cast<Type*>(reinterpret_cast<BYTE*>(GetModuleHandleW(nullptr)) + offset);
}

/// Where the program keeps the address of an imported function; null when it imports none of that name.
ULONGLONG* FindSlot(const char* library, std::string_view function) {
  const auto* const headers = At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
  const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto* entry = At<IMAGE_IMPORT_DESCRIPTOR>(imports); entry->Name != 0; ++entry) {
    if (_stricmp(At<char>(entry->Name), library) != 0) continue;
    auto* slot = At<ULONGLONG>(entry->FirstThunk);
    for (auto* name = At<ULONGLONG>(entry->OriginalFirstThunk); *name != 0; ++name, ++slot) {
      const bool isNumber = (*name & IMAGE_ORDINAL_FLAG64) != 0;
      if (!isNumber && function == At<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(*name))->Name) return slot;
    }
  }
  return nullptr;
}

void Put(ULONGLONG* slot, ULONGLONG address) {
  DWORD protection = 0;
  VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
  *slot = address;
  VirtualProtect(slot, sizeof(*slot), protection, &protection);
}

}  // namespace

ImportFault::ImportFault(const char* library, const char* function, FARPROC replacement)
    : slot_(FindSlot(library, function)) {
  EXPECT_NE(slot_, nullptr) << library << ' ' << function;
  if (slot_ == nullptr) return;
  former_ = *slot_;
  Put(slot_, reinterpret_cast<ULONGLONG>(replacement));
}

ImportFault::~ImportFault() {
  if (slot_ != nullptr) Put(slot_, former_);
}

}  // namespace qv::test
