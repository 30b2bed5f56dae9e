#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// Part of the registry that a script's root names: "HKCR" is the current user's classes, "HKCU" the current
/// user's hive.
enum class RegistryRoot { kClasses, kCurrentUser };

enum class RegistryStep {
  kCreateKey,
  /// Deletes the key with everything below it; a missing one is no failure.
  kDeleteTree,
  /// Deletes the key unless something of others is left below it.
  kDeleteKeyIfEmpty,
  kSetValue,
  kDeleteValue,
};

/// One change of the registry.
struct RegistryChange {
  RegistryStep step;
  RegistryRoot root;
  /// Path below the root.
  std::wstring path;
  /// Value name; empty for the key's default value. Only for the value steps.
  std::wstring name;
  /// Text, or a 32-bit number when `isNumber`.
  std::wstring text;
  std::uint32_t number = 0;
  bool isNumber = false;

  bool operator==(const RegistryChange&) const = default;
};

// Registrar scripts: a root ("HKCR" or "HKCU") and a pair of braces that hold keys,
//
//   [ForceRemove | NoRemove | Delete] Name [= s 'text' | = d 'number'] [{ keys and values }]
//   val Name = s 'text' | d 'number'
//
// Names and texts may stand between apostrophes, a doubled one stands for itself; %MODULE% in a text becomes
// the module's path. ForceRemove keys are made anew at registration, NoRemove keys survive an unregistration,
// Delete keys are only removed.

/// The changes that register what the script describes, in order; nothing for a malformed script.
[[nodiscard]] std::optional<std::vector<RegistryChange>> PlanRegistration(std::wstring_view script,
                                                                          std::wstring_view modulePath);

/// The changes that take it away again.
[[nodiscard]] std::optional<std::vector<RegistryChange>> PlanUnregistration(std::wstring_view script);

}  // namespace qv
