#include "engines/calc/office_path.h"

#include <windows.h>

#include "foundation/text.h"

namespace qv::devhost::calc {

std::string OfficePath(const std::wstring& path) {
  using Translate = char*(CDECL*)(const WCHAR*);
  const bool hasDrive = path.size() > 2 && path[1] == L':';
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  // Only Wine has it; on Windows there is nothing to translate.
  const auto translate =
      reinterpret_cast<Translate>(reinterpret_cast<void*>(GetProcAddress(kernel, "wine_get_unix_file_name")));
  if (!hasDrive || translate == nullptr) return ToUtf8(path);
  char* const native = translate(path.c_str());
  if (native == nullptr) return ToUtf8(path);
  std::string result(native);
  HeapFree(GetProcessHeap(), 0, native);
  return result;
}

}  // namespace qv::devhost::calc
