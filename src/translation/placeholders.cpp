#include "translation/placeholders.h"

#include <utility>

namespace qv {
namespace {

bool IsDigit(wchar_t unit) {
  return unit >= L'0' && unit <= L'9';
}

bool IsLetterOrDigit(wchar_t unit) {
  return IsDigit(unit) || (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z');
}

/// Reads one token from left to right; every step fails at the end of the text.
class TokenReader {
 public:
  TokenReader(std::wstring_view text, std::size_t at) : text_(text), at_(at) {}

  [[nodiscard]] std::size_t Position() const { return at_; }

  bool Take(wchar_t lower, wchar_t upper) {
    if (at_ >= text_.size() || (text_[at_] != lower && text_[at_] != upper)) return false;
    ++at_;
    return true;
  }
  bool Take(wchar_t unit) { return Take(unit, unit); }

  template <typename Test>
  std::size_t TakeWhile(Test test) {
    const std::size_t begin = at_;
    while (at_ < text_.size() && test(text_[at_]))
      ++at_;
    return at_ - begin;
  }

  bool TakeToken() {
    if (!Take(L'[') || !Take(L'[') || !Take(L'q', L'Q') || !Take(L'v', L'V') || !Take(L'_')) return false;
    TakeWhile(IsLetterOrDigit);
    return Take(L'_') && TakeWhile(IsDigit) > 0 && Take(L']') && Take(L']');
  }

 private:
  std::wstring_view text_;
  std::size_t at_;
};

TranslateResult Passed() {
  TranslateResult result;
  result.ok = true;
  return result;
}

/// Puts a translation right whose number of tokens differs from `expected`.
TranslateResult Repair(const std::wstring& source, std::int32_t expected, std::wstring& translation,
                       const RetranslateOne& retranslate) {
  TranslateResult again = retranslate(source);
  if (!again.ok) {
    return TranslateResult::Failure(again.code,
                                    again.message.empty() ? L"Placeholder repair failed" : again.message);
  }
  if (again.translations.size() == 1) translation = std::move(again.translations.front());
  if (CountPlaceholders(translation) != expected) {
    return TranslateResult::Failure(L"", L"Translation altered locked placeholders (cross-ref/formula)");
  }
  return Passed();
}

}  // namespace

std::int32_t CountPlaceholders(std::wstring_view text) {
  std::int32_t count = 0;
  std::size_t at = text.find(L"[[");
  while (at != std::wstring_view::npos) {
    TokenReader reader(text, at);
    const bool token = reader.TakeToken();
    if (token) ++count;
    at = text.find(L"[[", token ? reader.Position() : at + 1);
  }
  return count;
}

TranslateResult VerifyPlaceholders(const std::vector<std::wstring>& sources,
                                   std::vector<std::wstring>& translations, const RunFlags& flags,
                                   const RetranslateOne& retranslate) {
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (!flags.Pass()) return TranslateResult::Cancelled();
    const std::int32_t expected = CountPlaceholders(sources[i]);
    if (expected == 0 || CountPlaceholders(translations[i]) == expected) continue;
    TranslateResult repaired = Repair(sources[i], expected, translations[i], retranslate);
    if (!repaired.ok) return repaired;
  }
  return Passed();
}

}  // namespace qv
