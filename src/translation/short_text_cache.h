#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace qv {

/// Translations of very short texts ("Yes", "kg"), which repeat often in sheets. Lives as long as one run;
/// one thread.
class ShortTextCache {
 public:
  /// Whether a text has 1 to 4 characters, a surrogate pair counted as one. Others bypass the cache.
  [[nodiscard]] static bool Takes(std::wstring_view text);

  /// The stored translation, or null. The pointer is valid until the next `Store`.
  [[nodiscard]] const std::wstring* Find(const std::wstring& text) const;

  /// Ignored for a text that the cache does not take.
  void Store(const std::wstring& text, const std::wstring& translation);

 private:
  std::unordered_map<std::wstring, std::wstring> translations_;
};

}  // namespace qv
