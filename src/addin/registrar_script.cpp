#include "addin/registrar_script.h"

#include "foundation/text.h"

namespace qv {
namespace {

constexpr int kMaxDepth = 32;

enum class Removal { kPlain, kForceRemove, kNoRemove, kDelete };

struct Value {
  std::wstring name;
  std::wstring text;
  std::uint32_t number = 0;
  bool isNumber = false;
};

struct Key {
  std::wstring name;
  Removal removal = Removal::kPlain;
  std::optional<Value> defaultValue;
  std::vector<Value> values;
  std::vector<Key> keys;
};

struct Token {
  std::wstring text;
  bool quoted = false;

  [[nodiscard]] bool Is(std::wstring_view word) const { return !quoted && EqualsIgnoreAsciiCase(text, word); }
};

constexpr std::wstring_view kMarks = L"{}=";

/// Length of the class id in braces that the text begins with; 0 when it is another brace.
std::size_t ClassIdLength(std::wstring_view text) {
  constexpr std::size_t kLength = 38;
  if (text.size() < kLength || text[0] != L'{' || text[kLength - 1] != L'}') return 0;
  for (const wchar_t unit : text.substr(1, kLength - 2)) {
    if (IsSpace(unit) || unit == L'\'' || kMarks.find(unit) != std::wstring_view::npos) return 0;
  }
  return kLength;
}

/// Splits a script into words, braces, equal signs and texts between apostrophes.
std::optional<std::vector<Token>> Split(std::wstring_view script) {
  std::vector<Token> tokens;
  std::size_t at = 0;
  while (at < script.size()) {
    if (IsSpace(script[at])) {
      ++at;
    } else if (script[at] == L'\'') {
      std::wstring text;
      for (++at;; ++at) {
        if (at >= script.size()) return std::nullopt;
        if (script[at] == L'\'') {
          if (at + 1 >= script.size() || script[at + 1] != L'\'') break;
          ++at;
        }
        text += script[at];
      }
      ++at;
      tokens.push_back({text, true});
    } else if (const std::size_t length = ClassIdLength(script.substr(at)); length != 0) {
      tokens.push_back({std::wstring(script.substr(at, length)), false});
      at += length;
    } else if (kMarks.find(script[at]) != std::wstring_view::npos) {
      tokens.push_back({std::wstring(1, script[at++]), false});
    } else {
      const std::size_t start = at;
      while (at < script.size() && !IsSpace(script[at]) && script[at] != L'\'' &&
             kMarks.find(script[at]) == std::wstring_view::npos) {
        ++at;
      }
      tokens.push_back({std::wstring(script.substr(start, at - start)), false});
    }
  }
  return tokens;
}

std::optional<std::uint32_t> ParseNumber(std::wstring_view text) {
  std::uint64_t number = 0;
  if (text.empty()) return std::nullopt;
  for (const wchar_t unit : text) {
    if (unit < L'0' || unit > L'9') return std::nullopt;
    number = number * 10 + static_cast<std::uint64_t>(unit - L'0');
    if (number > 0xFFFFFFFF) return std::nullopt;
  }
  return static_cast<std::uint32_t>(number);
}

class Parser {
 public:
  explicit Parser(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

  std::optional<std::vector<std::pair<RegistryRoot, Key>>> ParseScript() {
    std::vector<std::pair<RegistryRoot, Key>> roots;
    while (at_ < tokens_.size()) {
      const Token token = Next();
      Key root;
      if (!Accept(L"{") || !ParseBody(root, 0)) return std::nullopt;
      if (token.Is(L"HKCR")) {
        roots.emplace_back(RegistryRoot::kClasses, std::move(root));
      } else if (token.Is(L"HKCU")) {
        roots.emplace_back(RegistryRoot::kCurrentUser, std::move(root));
      } else {
        return std::nullopt;
      }
    }
    return roots;
  }

 private:
  [[nodiscard]] Token Next() { return at_ < tokens_.size() ? tokens_[at_++] : Token{}; }

  [[nodiscard]] bool Accept(std::wstring_view word) {
    if (at_ >= tokens_.size() || !tokens_[at_].Is(word)) return false;
    ++at_;
    return true;
  }

  [[nodiscard]] bool ParseName(std::wstring& name) {
    const Token token = Next();
    name = token.text;
    return !name.empty() && (token.quoted || !(token.Is(L"{") || token.Is(L"}") || token.Is(L"=")));
  }

  [[nodiscard]] bool ParseData(Value& value) {
    const bool isText = Accept(L"s");
    if (!isText && !Accept(L"d")) return false;
    const Token data = Next();
    if (!data.quoted) return false;
    if (isText) {
      value.text = data.text;
      return true;
    }
    const auto number = ParseNumber(data.text);
    value.isNumber = true;
    value.number = number.value_or(0);
    return number.has_value();
  }

  [[nodiscard]] bool ParseBody(Key& key, int depth) {
    if (depth > kMaxDepth) return false;
    while (!Accept(L"}")) {
      if (at_ >= tokens_.size()) return false;
      if (Accept(L"val")) {
        Value value;
        if (!ParseName(value.name) || !Accept(L"=") || !ParseData(value)) return false;
        key.values.push_back(std::move(value));
      } else if (!ParseKey(key.keys.emplace_back(), depth)) {
        return false;
      }
    }
    return true;
  }

  [[nodiscard]] bool ParseKey(Key& key, int depth) {
    if (Accept(L"ForceRemove")) {
      key.removal = Removal::kForceRemove;
    } else if (Accept(L"NoRemove")) {
      key.removal = Removal::kNoRemove;
    } else if (Accept(L"Delete")) {
      key.removal = Removal::kDelete;
    }
    if (!ParseName(key.name)) return false;
    if (Accept(L"=") && !ParseData(key.defaultValue.emplace())) return false;
    return !Accept(L"{") || ParseBody(key, depth + 1);
  }

  std::vector<Token> tokens_;
  std::size_t at_ = 0;
};

RegistryChange KeyChange(RegistryStep step, RegistryRoot root, const std::wstring& path) {
  return {step, root, path, {}, {}, 0, false};
}

RegistryChange SetValue(RegistryRoot root, const std::wstring& path, const Value& value,
                        std::wstring_view modulePath) {
  return {RegistryStep::kSetValue,
          root,
          path,
          value.name,
          ReplaceAll(value.text, L"%MODULE%", modulePath),
          value.number,
          value.isNumber};
}

std::wstring Below(const std::wstring& parent, const std::wstring& name) {
  return parent.empty() ? name : parent + L'\\' + name;
}

void Register(RegistryRoot root, const std::wstring& parent, const Key& key, std::wstring_view modulePath,
              std::vector<RegistryChange>& changes) {
  const std::wstring path = Below(parent, key.name);
  if (key.removal == Removal::kForceRemove || key.removal == Removal::kDelete) {
    changes.push_back(KeyChange(RegistryStep::kDeleteTree, root, path));
  }
  if (key.removal == Removal::kDelete) return;
  changes.push_back(KeyChange(RegistryStep::kCreateKey, root, path));
  if (key.defaultValue) changes.push_back(SetValue(root, path, *key.defaultValue, modulePath));
  for (const Value& value : key.values)
    changes.push_back(SetValue(root, path, value, modulePath));
  for (const Key& child : key.keys)
    Register(root, path, child, modulePath, changes);
}

void Unregister(RegistryRoot root, const std::wstring& parent, const Key& key,
                std::vector<RegistryChange>& changes) {
  const std::wstring path = Below(parent, key.name);
  if (key.removal == Removal::kForceRemove) {
    changes.push_back(KeyChange(RegistryStep::kDeleteTree, root, path));
    return;
  }
  if (key.removal == Removal::kDelete) return;
  for (const Key& child : key.keys)
    Unregister(root, path, child, changes);
  for (const Value& value : key.values)
    changes.push_back({RegistryStep::kDeleteValue, root, path, value.name, {}, 0, false});
  if (key.removal == Removal::kPlain)
    changes.push_back(KeyChange(RegistryStep::kDeleteKeyIfEmpty, root, path));
}

template <typename Visit>
std::optional<std::vector<RegistryChange>> Plan(std::wstring_view script, const Visit& visit) {
  auto tokens = Split(script);
  if (!tokens) return std::nullopt;
  const auto roots = Parser(std::move(*tokens)).ParseScript();
  if (!roots) return std::nullopt;
  std::vector<RegistryChange> changes;
  for (const auto& [root, key] : *roots) {
    for (const Key& child : key.keys)
      visit(root, child, changes);
  }
  return changes;
}

}  // namespace

std::optional<std::vector<RegistryChange>> PlanRegistration(std::wstring_view script,
                                                            std::wstring_view modulePath) {
  return Plan(script, [&](RegistryRoot root, const Key& key, std::vector<RegistryChange>& changes) {
    Register(root, {}, key, modulePath, changes);
  });
}

std::optional<std::vector<RegistryChange>> PlanUnregistration(std::wstring_view script) {
  return Plan(script, [](RegistryRoot root, const Key& key, std::vector<RegistryChange>& changes) {
    Unregister(root, {}, key, changes);
  });
}

}  // namespace qv
