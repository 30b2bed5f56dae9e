#include "services/json_spans.h"

#include <algorithm>
#include <ranges>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// Walks over a JSON text from a position on. After a failure the position means nothing.
class JsonWalker {
 public:
  JsonWalker(std::string_view text, std::size_t at) : text_(text), at_(at) {}

  [[nodiscard]] std::size_t At() const { return at_; }
  [[nodiscard]] bool IsAtEnd() const { return at_ >= text_.size(); }

  void SkipSpace() { at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()); }

  bool Take(char unit) {
    if (IsAtEnd() || text_[at_] != unit) return false;
    ++at_;
    return true;
  }

  bool SkipString() {
    if (!Take('"')) return false;
    while (!IsAtEnd()) {
      const char unit = text_[at_++];
      if (unit == '"') return true;
      if (static_cast<unsigned char>(unit) < 0x20) return false;
      if (unit == '\\' && !SkipEscape()) return false;
    }
    return false;
  }

  /// One value with all that is in it.
  bool SkipValue() {
    std::string open;
    for (;;) {
      SkipSpace();
      if (TakeOpening(open)) continue;
      if (failed_ || !SkipLeaf()) return false;
      if (!SkipBehindValue(open)) return false;
      if (open.empty()) return true;
    }
  }

 private:
  /// Takes the beginning of an object or array that is not empty, as far as its first value.
  bool TakeOpening(std::string& open) {
    const std::size_t begin = at_;
    for (const char* const pair : {"{}", "[]"}) {
      if (!Take(pair[0])) continue;
      SkipSpace();
      if (!IsAtEnd() && text_[at_] == pair[1]) {
        at_ = begin;
        return false;
      }
      open += pair[1];
      failed_ = pair[0] == '{' && !SkipName();
      return !failed_;
    }
    return false;
  }

  /// A scalar, "{}" or "[]".
  bool SkipLeaf() {
    for (const char* const pair : {"{}", "[]"}) {
      if (!Take(pair[0])) continue;
      SkipSpace();
      return Take(pair[1]);
    }
    if (!IsAtEnd() && text_[at_] == '"') return SkipString();
    for (const std::string_view word : {"true", "false", "null"}) {
      if (!text_.substr(at_).starts_with(word)) continue;
      at_ += word.size();
      return true;
    }
    return SkipNumber();
  }

  /// Closes what ends behind a value and goes on to the next one; `open` is empty when there is none.
  bool SkipBehindValue(std::string& open) {
    while (!open.empty()) {
      SkipSpace();
      if (Take(',')) {
        SkipSpace();
        return open.back() != '}' || SkipName();
      }
      if (!Take(open.back())) return false;
      open.pop_back();
    }
    return true;
  }

  bool SkipName() {
    if (!SkipString()) return false;
    SkipSpace();
    return Take(':');
  }

  bool SkipEscape() {
    if (IsAtEnd()) return false;
    const char unit = text_[at_++];
    if (unit != 'u') return std::string_view("\"\\/bfnrt").find(unit) != std::string_view::npos;
    const std::size_t end = text_.find_first_not_of("0123456789abcdefABCDEF", at_);
    if (std::min(end, text_.size()) < at_ + 4) return false;
    at_ += 4;
    return true;
  }

  bool SkipNumber() {
    static_cast<void>(Take('-'));
    // A number that goes on after a leading zero is none.
    if (!Take('0') && !SkipDigits()) return false;
    if (Take('.') && !SkipDigits()) return false;
    if (!Take('e') && !Take('E')) return true;
    if (!Take('+')) static_cast<void>(Take('-'));
    return SkipDigits();
  }

  bool SkipDigits() {
    const std::size_t begin = at_;
    at_ = std::min(text_.find_first_not_of("0123456789", at_), text_.size());
    return at_ > begin;
  }

  std::string_view text_;
  std::size_t at_;
  bool failed_ = false;
};

bool TakeMember(JsonWalker& walker, JsonMemberSpan& member) {
  walker.SkipSpace();
  member.name.begin = walker.At();
  if (!walker.SkipString()) return false;
  member.name.end = walker.At();
  walker.SkipSpace();
  if (!walker.Take(':')) return false;
  walker.SkipSpace();
  member.value.begin = walker.At();
  if (!walker.SkipValue()) return false;
  member.value.end = walker.At();
  walker.SkipSpace();
  return true;
}

bool TakeMembers(JsonWalker& walker, std::vector<JsonMemberSpan>& members) {
  walker.SkipSpace();
  if (walker.Take('}')) return true;
  do {
    if (!TakeMember(walker, members.emplace_back())) return false;
  } while (walker.Take(','));
  return walker.Take('}');
}

std::string DecodedString(std::string_view quoted) {
  const std::string_view inner = quoted.substr(1, quoted.size() - 2);
  if (inner.find('\\') == std::string_view::npos) return std::string(inner);
  return ToUtf8(JsonDecodeString(FromUtf8(inner), 0));
}

}  // namespace

std::optional<JsonObjectSpan> JsonObjectIn(std::string_view text) {
  return JsonObjectIn(text, {0, text.size()});
}

std::optional<JsonObjectSpan> JsonObjectIn(std::string_view text, JsonSpan part) {
  JsonWalker walker(text.substr(0, part.end), part.begin);
  JsonObjectSpan object;
  walker.SkipSpace();
  object.braces.begin = walker.At();
  if (!walker.Take('{') || !TakeMembers(walker, object.members)) return std::nullopt;
  object.braces.end = walker.At();
  walker.SkipSpace();
  return walker.IsAtEnd() ? std::optional(std::move(object)) : std::nullopt;
}

const JsonMemberSpan* JsonMemberNamed(std::string_view text, const JsonObjectSpan& object,
                                      std::string_view name) {
  for (const JsonMemberSpan& member : object.members | std::views::reverse)
    if (DecodedString(member.name.In(text)) == name) return &member;
  return nullptr;
}

std::optional<std::string> JsonStringAt(std::string_view text,
                                        std::initializer_list<std::string_view> names) {
  JsonSpan value{0, text.size()};
  for (const std::string_view name : names) {
    const auto object = JsonObjectIn(text, value);
    const JsonMemberSpan* const member = object ? JsonMemberNamed(text, *object, name) : nullptr;
    if (member == nullptr) return std::nullopt;
    value = member->value;
  }
  const std::string_view found = value.In(text);
  return found.starts_with('"') ? std::optional(DecodedString(found)) : std::nullopt;
}

}  // namespace qv
