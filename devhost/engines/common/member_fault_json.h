#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "engines/common/member_faults.h"

namespace qv::devhost {

// What both engines read in a fault description:
// {"fail":"Range.Value2","code":"0x800A03EC","as":"exception"|"result","times":n|"always","on":"any"|"get"|
//  "put"|"method"|"names","after":n}
//   The next n calls of the member, by default all, answer with the code, by default the host's general
//   refusal. Codes 0x800Axxxx are exceptions unless "as" says otherwise; "after" calls still succeed.
// {"busy":n,"way":"exception"|"rejected"|"retry","member":"*"}
//   n times the host is editing a cell (0x800AC472 in EXCEPINFO), refuses the name lookup (0x80010001), or
//   answers 0x8001010A.
// {"slow":milliseconds,"member":"*","times":n|"always"}
//   The next n calls, by default all, take that much longer and block the host's thread meanwhile.
// Members are "Class.Member", "*.Member", "Class.*" or "*". What is wrong in a description throws
// std::runtime_error, json::exception or std::logic_error.

/// The failure that the description's member "fail" asks for.
[[nodiscard]] MemberFault FailureFromJson(const nlohmann::json& fault);
/// The failure that the description's member "busy" asks for.
[[nodiscard]] MemberFault BusyFromJson(const nlohmann::json& fault);
/// The delay that the description's member "slow" asks for.
[[nodiscard]] MemberFault DelayFromJson(const nlohmann::json& fault);
/// Members that only go with "fail", "busy" and "slow".
[[nodiscard]] bool IsDetailOfFault(const std::string& member);

/// A number of times: a number, true or "always" for `kAlways`, false for 0.
[[nodiscard]] long TimesFromJson(const nlohmann::json& times);

[[noreturn]] void ThrowBadFault(const std::string& what);

/// What one of a few words means; another one throws.
template <typename Value>
[[nodiscard]] Value FaultWord(const std::map<std::string, Value>& words, const nlohmann::json& word,
                              const std::string& member) {
  const auto found = words.find(word.get<std::string>());
  if (found == words.end()) ThrowBadFault("unknown word for " + member + ": " + word.get<std::string>());
  return found->second;
}

}  // namespace qv::devhost
