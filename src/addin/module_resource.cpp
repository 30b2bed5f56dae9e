#include "addin/module_resource.h"

#include <windows.h>

#include "foundation/module.h"

namespace qv {

std::optional<std::string_view> ModuleResource(int id, const wchar_t* type) {
  const HRSRC resource = FindResourceW(ThisModule(), MAKEINTRESOURCEW(id), type);
  if (resource == nullptr) return std::nullopt;
  const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(ThisModule(), resource)));
  if (bytes == nullptr) return std::nullopt;
  return std::string_view(bytes, SizeofResource(ThisModule(), resource));
}

}  // namespace qv
