#include "services/toml_statements.h"

#include <algorithm>
#include <utility>

namespace qv {

std::optional<TomlStatement> TomlReader::Next() {
  if (!malformed_) SkipEmptyLines();
  if (malformed_ || IsAtEnd()) return std::nullopt;
  TomlStatement statement;
  statement.begin = at_;
  const bool taken = NextIs("[") ? TakeHeader(statement) : TakeKeyAndValue(statement);
  malformed_ = !taken || !TakeLineEnd();
  return malformed_ ? std::nullopt : std::optional(std::move(statement));
}

bool TomlReader::Take(std::string_view part) {
  if (!NextIs(part)) return false;
  at_ += part.size();
  return true;
}

void TomlReader::SkipBlank() {
  at_ = std::min(text_.find_first_not_of(" \t", at_), text_.size());
}

void TomlReader::SkipEmptyLines() {
  for (;;) {
    SkipBlank();
    if (IsAtEnd() || (text_[at_] != '#' && text_[at_] != '\r' && text_[at_] != '\n')) return;
    if (!TakeLineEnd()) {
      malformed_ = true;
      return;
    }
  }
}

bool TomlReader::TakeLineEnd() {
  SkipBlank();
  if (NextIs("#")) {
    at_ = std::min(text_.find('\n', at_), text_.size());
    return IsAtEnd() || Take("\n");
  }
  return IsAtEnd() || Take("\n") || Take("\r\n");
}

bool TomlReader::TakeHeader(TomlStatement& statement) {
  const bool isArray = Take("[[");
  if (!isArray) static_cast<void>(Take("["));
  statement.kind = isArray ? TomlStatement::Kind::kArrayTable : TomlStatement::Kind::kTable;
  return TakeKey(statement.key) && Take(isArray ? "]]" : "]");
}

bool TomlReader::TakeKey(TomlKey& key) {
  do {
    SkipBlank();
    if (!TakeKeyPart(key.emplace_back())) return false;
    SkipBlank();
  } while (Take("."));
  return true;
}

bool TomlReader::TakeKeyPart(std::string& part) {
  const std::size_t begin = at_;
  if (NextIs("\"") || NextIs("'")) {
    if (!SkipLineString(text_[at_])) return false;
    part = text_.substr(begin + 1, at_ - begin - 2);
    return true;
  }
  constexpr std::string_view kBare = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";
  at_ = std::min(text_.find_first_not_of(kBare, at_), text_.size());
  part = text_.substr(begin, at_ - begin);
  return !part.empty();
}

bool TomlReader::TakeKeyAndValue(TomlStatement& statement) {
  if (!TakeKey(statement.key) || !Take("=")) return false;
  SkipBlank();
  const std::size_t begin = at_;
  if (!SkipValue()) return false;
  const std::string_view value = text_.substr(begin, at_ - begin);
  statement.value = value.substr(0, value.find_last_not_of(" \t\r") + 1);
  return !statement.value.empty();
}

bool TomlReader::SkipValue() {
  std::string closers;
  while (!IsAtEnd()) {
    const char unit = text_[at_];
    if (unit == '"' || unit == '\'') {
      if (!SkipString()) return false;
      continue;
    }
    if (closers.empty() && (unit == '\n' || unit == '#' || NextIs("\r\n"))) break;
    if (unit == '#') {
      at_ = std::min(text_.find('\n', at_), text_.size());
      continue;
    }
    ++at_;
    if (unit == '[' || unit == '{') closers += unit == '[' ? ']' : '}';
    if (unit != ']' && unit != '}') continue;
    if (closers.empty() || closers.back() != unit) return false;
    closers.pop_back();
  }
  return closers.empty();
}

bool TomlReader::SkipString() {
  for (const std::string_view quotes : {"\"\"\"", "'''"})
    if (NextIs(quotes)) return SkipTextBlock(quotes);
  return SkipLineString(text_[at_]);
}

bool TomlReader::SkipLineString(char quote) {
  for (++at_; !IsAtEnd() && text_[at_] != '\n'; ++at_) {
    if (text_[at_] == quote) {
      ++at_;
      return true;
    }
    if (quote == '"' && text_[at_] == '\\') ++at_;
  }
  return false;
}

bool TomlReader::SkipTextBlock(std::string_view quotes) {
  for (at_ += quotes.size(); !IsAtEnd(); ++at_) {
    if (Take(quotes)) {
      // One or two quotation marks more belong to the text itself.
      static_cast<void>(Take(quotes.substr(0, 2)) || Take(quotes.substr(0, 1)));
      return true;
    }
    if (quotes[0] == '"' && text_[at_] == '\\') ++at_;
  }
  return false;
}

}  // namespace qv
