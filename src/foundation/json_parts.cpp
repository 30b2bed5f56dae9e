#include "foundation/json_parts.h"

#include <algorithm>
#include <utility>

#include "foundation/json_text.h"

namespace qv {
namespace {

/// Takes JSON values from the front of a text. After a failure nothing more is taken.
class PartReader {
 public:
  explicit PartReader(std::wstring_view text) : text_(text) {}

  /// Takes the unit when it comes next behind white space.
  bool Take(wchar_t unit) {
    SkipSpace();
    if (at_ >= text_.size() || text_[at_] != unit) return false;
    ++at_;
    return true;
  }

  /// Empty when no value comes next.
  std::wstring_view TakeValue() {
    SkipSpace();
    const std::size_t begin = at_;
    return SkipValue() ? text_.substr(begin, at_ - begin) : std::wstring_view();
  }

  bool IsAtEnd() {
    SkipSpace();
    return at_ >= text_.size();
  }

 private:
  void SkipSpace() { at_ = std::min(text_.find_first_not_of(L" \t\r\n", at_), text_.size()); }

  bool SkipValue() {
    const std::wstring_view next = text_.substr(at_);
    if (next.starts_with(L'"')) return SkipString();
    return next.starts_with(L'{') || next.starts_with(L'[') ? SkipNested() : SkipScalar();
  }

  bool SkipString() {
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == L'"') {
        ++at_;
        return true;
      }
      if (text_[at_] == L'\\') ++at_;
    }
    return false;
  }

  bool SkipNested() {
    std::wstring closers;
    while (at_ < text_.size()) {
      const wchar_t unit = text_[at_];
      if (unit == L'"') {
        if (!SkipString()) return false;
        continue;
      }
      ++at_;
      if (unit == L'{' || unit == L'[') closers += unit == L'{' ? L'}' : L']';
      if (unit != L'}' && unit != L']') continue;
      if (closers.back() != unit) return false;
      closers.pop_back();
      if (closers.empty()) return true;
    }
    return false;
  }

  bool SkipScalar() {
    for (const std::wstring_view word : {L"true", L"false", L"null"}) {
      if (!text_.substr(at_).starts_with(word)) continue;
      at_ += word.size();
      return true;
    }
    return SkipNumber();
  }

  bool SkipNumber() {
    SkipOne(L"-");
    // A number that goes on after a leading zero is none.
    if (!SkipOne(L"0") && !SkipDigits()) return false;
    if (SkipOne(L".") && !SkipDigits()) return false;
    if (!SkipOne(L"eE")) return true;
    SkipOne(L"+-");
    return SkipDigits();
  }

  bool SkipOne(std::wstring_view units) {
    if (at_ >= text_.size() || units.find(text_[at_]) == std::wstring_view::npos) return false;
    ++at_;
    return true;
  }

  bool SkipDigits() {
    const std::size_t begin = at_;
    at_ = std::min(text_.find_first_not_of(L"0123456789", at_), text_.size());
    return at_ > begin;
  }

  std::wstring_view text_;
  std::size_t at_ = 0;
};

/// Walks over "open item, item, … close" up to the end of the text; false when the text is anything else.
template <typename Item>
bool TakeAll(PartReader& reader, wchar_t open, wchar_t close, const Item& takeItem) {
  if (!reader.Take(open)) return false;
  if (!reader.Take(close)) {
    do {
      if (!takeItem()) return false;
    } while (reader.Take(L','));
    if (!reader.Take(close)) return false;
  }
  return reader.IsAtEnd();
}

bool IsString(std::wstring_view value) {
  return value.starts_with(L'"');
}

}  // namespace

std::optional<JsonMembers> JsonMembersOf(std::wstring_view object) {
  JsonMembers members;
  PartReader reader(object);
  const bool complete = TakeAll(reader, L'{', L'}', [&] {
    const std::wstring_view name = reader.TakeValue();
    if (!IsString(name) || !reader.Take(L':')) return false;
    const std::wstring_view value = reader.TakeValue();
    members.push_back({JsonDecodeString(name, 1), value});
    return !value.empty();
  });
  return complete ? std::optional(std::move(members)) : std::nullopt;
}

std::optional<std::vector<std::wstring_view>> JsonElementsOf(std::wstring_view array) {
  std::vector<std::wstring_view> elements;
  PartReader reader(array);
  const bool complete = TakeAll(reader, L'[', L']', [&] {
    elements.push_back(reader.TakeValue());
    return !elements.back().empty();
  });
  return complete ? std::optional(std::move(elements)) : std::nullopt;
}

std::wstring_view JsonValueOf(const JsonMembers& members, std::wstring_view name) {
  const auto member = std::ranges::find(members, name, &JsonMember::name);
  return member == members.end() ? std::wstring_view() : member->value;
}

std::wstring_view JsonFindValue(std::wstring_view text, std::wstring_view name) {
  const std::wstring needle = JsonKeyNeedle(name);
  for (std::size_t at = text.find(needle); at != std::wstring_view::npos; at = text.find(needle, at + 1)) {
    PartReader reader(text.substr(at + needle.size()));
    if (reader.Take(L':')) return reader.TakeValue();
  }
  return {};
}

std::optional<std::wstring> JsonStringOf(const JsonMembers& members, std::wstring_view name) {
  const std::wstring_view value = JsonValueOf(members, name);
  if (!IsString(value)) return std::nullopt;
  return JsonDecodeString(value, 1);
}

}  // namespace qv
