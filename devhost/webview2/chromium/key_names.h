#pragma once

#include <string>

namespace qv::devhost {

/// What a page calls a key: the value that depends on the layout and the place on the keyboard.
struct KeyName {
  std::string key;
  std::string code;
};

/// Of a virtual key. `character` is what the key types, 0 for nothing; it is the key's value unless the key
/// has a name. Both are empty for keys that nothing is known of.
[[nodiscard]] KeyName NameOfKey(unsigned virtualKey, wchar_t character);

}  // namespace qv::devhost
