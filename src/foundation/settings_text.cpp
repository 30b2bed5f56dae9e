#include "foundation/settings_text.h"

#include <algorithm>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

constexpr std::size_t kNone = std::wstring_view::npos;

/// Where things stand in the text's outermost object; kNone for what is not there.
struct ObjectLayout {
  /// Behind the opening brace.
  std::size_t open = kNone;
  /// Of the closing brace.
  std::size_t close = kNone;
  /// Whether nothing but white space and comments stands between the braces.
  bool isEmpty = true;
  /// Behind the last member's value.
  std::size_t lastValueEnd = kNone;
  /// Of the wanted member: its quoted key, its value, and behind its value.
  std::size_t key = kNone;
  std::size_t value = kNone;
  std::size_t valueEnd = kNone;
};

/// Finds one member of the outermost object, whatever people have written around it: nested values, comments,
/// trailing commas, other text. Only what stands outside strings and comments counts.
class ObjectScanner {
 public:
  explicit ObjectScanner(std::wstring_view text) : text_(text) {}

  ObjectLayout Find(std::wstring_view key) {
    ObjectLayout layout;
    layout.open = FindObject();
    while (layout.open != kNone && !AtEnd()) {
      if (Unit() == L'}') {
        layout.close = at_;
        break;
      }
      layout.isEmpty = false;
      TakeMember(key, layout);
    }
    return layout;
  }

 private:
  /// Skips white space and comments first, so that the current unit, if any, is neither.
  bool AtEnd() {
    for (std::size_t before = kNone; before != at_ && at_ < text_.size();) {
      before = at_;
      if (IsSpace(text_[at_])) {
        ++at_;
      } else if (text_.substr(at_).starts_with(L"//")) {
        at_ = std::min(text_.find_first_of(L"\r\n", at_), text_.size());
      } else if (text_.substr(at_).starts_with(L"/*")) {
        const std::size_t close = text_.find(L"*/", at_ + 2);
        at_ = close == kNone ? text_.size() : close + 2;
      }
    }
    return at_ >= text_.size();
  }

  [[nodiscard]] wchar_t Unit() const { return text_[at_]; }

  /// Unlike the lenient decoder, never lets a short \u escape run over the closing quotation mark.
  void TakeString() {
    for (++at_; at_ < text_.size() && text_[at_] != L'"'; ++at_) {
      if (text_[at_] == L'\\') ++at_;
    }
    at_ = std::min(at_ + 1, text_.size());
  }

  /// Takes tokens up to an unnested one among `stops`; returns the index behind the last one taken.
  std::size_t TakeUntil(std::wstring_view stops) {
    std::size_t depth = 0;
    std::size_t end = at_;
    while (!AtEnd() && (depth > 0 || !Contains(stops, std::wstring_view(&text_[at_], 1)))) {
      const wchar_t unit = Unit();
      if (unit == L'"') {
        TakeString();
      } else {
        if (unit == L'{' || unit == L'[') ++depth;
        if ((unit == L'}' || unit == L']') && depth > 0) --depth;
        ++at_;
      }
      end = at_;
    }
    return end;
  }

  std::size_t FindObject() {
    TakeUntil(L"{");
    return at_ < text_.size() ? ++at_ : kNone;
  }

  void TakeMember(std::wstring_view key, ObjectLayout& layout) {
    const std::size_t keyAt = at_;
    if (Unit() != L'"') {
      ++at_;
      return;
    }
    TakeString();
    const bool wanted = layout.key == kNone && text_.substr(keyAt, at_ - keyAt) == JsonQuote(key);
    if (AtEnd() || Unit() != L':') return;
    ++at_;
    const std::size_t value = AtEnd() ? text_.size() : at_;
    layout.lastValueEnd = TakeUntil(L",}");
    if (!wanted) return;
    layout.key = keyAt;
    layout.value = value;
    layout.valueEnd = layout.lastValueEnd;
  }

  std::wstring_view text_;
  std::size_t at_ = 0;
};

/// The text from the member on, so that the lenient readers meet this occurrence of its key first.
std::wstring_view FromMember(std::wstring_view json, const ObjectLayout& layout) {
  return layout.key == kNone ? json : json.substr(layout.key);
}

}  // namespace

std::optional<int> StoredPaneWidth(std::wstring_view settingsJson) {
  constexpr std::wstring_view kKey = L"paneWidthPt";
  const std::int32_t width =
      JsonGetInt(FromMember(settingsJson, ObjectScanner(settingsJson).Find(kKey)), kKey);
  if (width < kMinPaneWidthPt || width > kMaxPaneWidthPt) return std::nullopt;
  return width;
}

int PaneWidthFrom(std::wstring_view settingsJson) {
  return StoredPaneWidth(settingsJson).value_or(kDefaultPaneWidthPt);
}

std::optional<std::wstring> UiLangFrom(std::wstring_view settingsJson) {
  constexpr std::wstring_view kKey = L"uiLang";
  const ObjectLayout layout = ObjectScanner(settingsJson).Find(kKey);
  // Without this, the name of the next member would be read as the language.
  if (layout.key != kNone && !settingsJson.substr(layout.value).starts_with(L'"')) return std::nullopt;
  std::wstring code = JsonFindString(FromMember(settingsJson, layout), kKey);
  if (code.empty()) return std::nullopt;
  return code;
}

std::wstring WithSetting(std::wstring_view settingsJson, std::wstring_view key, std::wstring_view valueText) {
  const std::wstring member = Concat(JsonQuote(key), L": ", valueText);
  const ObjectLayout layout = ObjectScanner(settingsJson).Find(key);
  if (layout.open == kNone) return Concat(L"{\n  ", member, L"\n}\n");
  if (layout.key != kNone)
    return Concat(settingsJson.substr(0, layout.value), valueText, settingsJson.substr(layout.valueEnd));

  const std::wstring_view head = settingsJson.substr(0, layout.open);
  const std::wstring_view rest = settingsJson.substr(layout.open);
  if (layout.close != kNone && layout.lastValueEnd != kNone) {
    return Concat(settingsJson.substr(0, layout.lastValueEnd), L",\n  ", member,
                  settingsJson.substr(layout.lastValueEnd));
  }
  // An object that is not closed, or holds no member that can be told, has only one safe place: its
  // beginning.
  if (!layout.isEmpty) return Concat(head, L"\n  ", member, L",", rest);
  if (layout.close == kNone) return Concat(head, L"\n  ", member, TrimRight(rest), L"\n}\n");
  const bool isBlank = Trim(rest.substr(0, layout.close - layout.open)).empty();
  return isBlank ? Concat(head, L"\n  ", member, L"\n", settingsJson.substr(layout.close))
                 : Concat(head, L"\n  ", member, rest);
}

std::wstring LanguageForId(unsigned languageId) {
  struct Row {
    unsigned primary;
    const wchar_t* code;
  };
  static constexpr Row kRows[] = {{1, L"ar"},  {7, L"de"},  {9, L"en"},  {10, L"es"},
                                  {12, L"fr"}, {17, L"ja"}, {18, L"ko"}, {25, L"ru"},
                                  {30, L"th"}, {33, L"id"}, {42, L"vi"}, {62, L"ms"}};
  constexpr unsigned kChinese = 4;
  constexpr unsigned kTraditionalChinese = 0x7C04;
  const unsigned primary = languageId & 0x3FF;
  const unsigned sub = languageId >> 10;
  if (primary == kChinese) {
    // Taiwan, Hong Kong and Macao write in traditional characters.
    const bool traditional = languageId == kTraditionalChinese || sub == 1 || sub == 3 || sub == 5;
    return traditional ? L"zh-TW" : L"zh-CN";
  }
  for (const Row& row : kRows) {
    if (row.primary == primary) return row.code;
  }
  return L"en";
}

}  // namespace qv
