#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

using TomlKey = std::vector<std::string>;

/// One statement of a TOML text: a table header, or a key with its value.
struct TomlStatement {
  enum class Kind { kTable, kArrayTable, kValue };
  Kind kind = Kind::kValue;
  /// The dotted parts; quoted ones without their quotation marks, escapes in them as they stand.
  TomlKey key;
  /// 0-based byte offset of the first unit that is no blank: a header's "[".
  std::size_t begin = 0;
  /// A value's text without what surrounds it.
  std::string_view value;
};

/// Takes a TOML text apart, statement by statement. Strings of all four kinds, arrays and inline tables are
/// stepped over as a whole, so that a line in one of them is never taken for a header.
class TomlReader {
 public:
  explicit TomlReader(std::string_view text) : text_(text) {}

  /// The next statement; nothing at the end of the text, or when it goes on with something that is none.
  [[nodiscard]] std::optional<TomlStatement> Next();

  /// Why `Next` gave nothing.
  [[nodiscard]] bool IsMalformed() const { return malformed_; }

 private:
  [[nodiscard]] bool IsAtEnd() const { return at_ >= text_.size(); }
  [[nodiscard]] bool NextIs(std::string_view part) const { return text_.substr(at_).starts_with(part); }
  bool Take(std::string_view part);
  void SkipBlank();
  void SkipEmptyLines();
  bool TakeLineEnd();
  bool TakeHeader(TomlStatement& statement);
  bool TakeKey(TomlKey& key);
  bool TakeKeyPart(std::string& part);
  bool TakeKeyAndValue(TomlStatement& statement);
  bool SkipValue();
  bool SkipString();
  bool SkipLineString(char quote);
  bool SkipTextBlock(std::string_view quotes);

  std::string_view text_;
  std::size_t at_ = 0;
  bool malformed_ = false;
};

}  // namespace qv
