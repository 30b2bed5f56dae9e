#include "foundation/json_reader.h"

#include <cmath>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// Longer than any number that a double tells from another one.
constexpr std::size_t kLongestNumber = 400;

bool IsNumber(std::wstring_view value) {
  return !value.empty() && (value.front() == L'-' || (value.front() >= L'0' && value.front() <= L'9'));
}

/// A message of one member, for the readers of whole messages.
std::wstring MessageOf(std::wstring_view value) {
  return Concat(L"\"v\":", value.substr(0, kLongestNumber));
}

}  // namespace

JsonReader::JsonReader(std::wstring_view json) : json_(json), members_(JsonMembersOf(json)) {}

std::wstring_view JsonReader::ValueOrNull(std::wstring_view name) const {
  return members_ ? JsonValueOf(*members_, name) : JsonFindValue(json_, name);
}

std::wstring_view JsonReader::Value(std::wstring_view name) const {
  const std::wstring_view value = ValueOrNull(name);
  return value == L"null" ? std::wstring_view() : value;
}

std::wstring JsonReader::Text(std::wstring_view name) const {
  const std::wstring_view own = ValueOrNull(name);
  return own.empty() ? JsonGetString(json_, name) : TextOfValue(own).value_or(std::wstring());
}

std::int32_t JsonReader::Integer(std::wstring_view name) const {
  const std::wstring_view own = ValueOrNull(name);
  return own.empty() ? JsonGetInt(json_, name) : IntegerOfValue(own);
}

std::wstring_view JsonReader::Object(std::wstring_view name) const {
  const std::wstring_view own = ValueOrNull(name);
  const std::wstring_view value = own.empty() ? JsonFindValue(json_, name) : own;
  return value.starts_with(L'{') ? value : std::wstring_view();
}

std::optional<std::wstring> TextOfValue(std::wstring_view value) {
  if (!value.starts_with(L'"')) return std::nullopt;
  return JsonDecodeString(value, 1);
}

std::int32_t IntegerOfValue(std::wstring_view value) {
  return IsNumber(value) ? JsonGetInt(MessageOf(value), L"v") : 0;
}

std::optional<double> NumberOfValue(std::wstring_view value) {
  if (!IsNumber(value)) return std::nullopt;
  const double number = JsonGetDouble(MessageOf(value), L"v");
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<bool> FlagOfValue(std::wstring_view value) {
  if (value == L"true" || value == L"1") return true;
  if (value == L"false" || value == L"0") return false;
  return std::nullopt;
}

}  // namespace qv
