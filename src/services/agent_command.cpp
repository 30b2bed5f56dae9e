#include "services/agent_command.h"

#include <algorithm>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

std::wstring Quoted(std::wstring_view path) {
  return Concat(L'"', path, L'"');
}

bool HasExtension(std::wstring_view path, std::wstring_view extension) {
  return path.size() >= extension.size() &&
         EqualsIgnoreAsciiCase(path.substr(path.size() - extension.size()), extension);
}

bool IsBatch(std::wstring_view path) {
  return HasExtension(path, L".cmd") || HasExtension(path, L".bat");
}

/// What runs a program that is no batch file.
std::wstring DirectLine(const Interpreters& interpreters, std::wstring_view path) {
  if (!HasExtension(path, L".ps1")) return Quoted(path);
  return Concat(Quoted(Concat(interpreters.systemDirectory, L"\\WindowsPowerShell\\v1.0\\powershell.exe")),
                L" -NoProfile -ExecutionPolicy Bypass -File ", Quoted(path));
}

/// The part of an environment entry ahead of its "="; the hidden ones of drives ("=C:=C:\") begin with one.
std::wstring_view NameOf(std::wstring_view entry) {
  return entry.substr(0, entry.find(L'=', 1));
}

}  // namespace

bool IsPlainProgram(std::wstring_view path) {
  return !IsBatch(path) && !HasExtension(path, L".ps1");
}

std::wstring ProgramCommandLine(const Interpreters& interpreters, std::wstring_view path,
                                std::wstring_view arguments) {
  if (!IsBatch(path)) return Concat(DirectLine(interpreters, path), L' ', arguments);
  // The outer quotation marks are the interpreter's own; it takes off only those.
  return Concat(Quoted(interpreters.comSpec), L" /d /s /c \"", Quoted(path), L' ', arguments, L'"');
}

std::wstring ConsoleArguments(const Interpreters& interpreters, std::wstring_view path) {
  // Without "call" a batch file's exit code is not seen behind it. The shorter "||" is mistaken about
  // programs in Wine.
  const std::wstring command =
      IsBatch(path) ? Concat(L"call ", Quoted(path)) : DirectLine(interpreters, path);
  return Concat(L"/d /s /c \"", command, L" & if errorlevel 1 pause\"");
}

std::wstring WithEnvironment(std::wstring_view block, const EnvironmentVariables& variables) {
  std::wstring changed;
  while (!block.empty() && block[0] != L'\0') {
    const std::wstring_view entry = block.substr(0, block.find(L'\0'));
    block.remove_prefix(std::min(entry.size() + 1, block.size()));
    const bool isReplaced = std::ranges::any_of(variables, [&](const auto& variable) {
      return EqualsIgnoreAsciiCase(NameOf(entry), variable.first);
    });
    if (!isReplaced) changed += Concat(entry, L'\0');
  }
  for (const auto& [name, value] : variables)
    changed += Concat(name, L'=', value, L'\0');
  return changed + L'\0';
}

std::wstring FirstLine(std::string_view output) {
  return std::wstring(Trim(FromUtf8(output.substr(0, output.find_first_of("\r\n")))));
}

std::wstring PackageLocation(std::wstring_view requested, std::wstring_view settingsJson,
                             std::wstring_view builtIn) {
  if (!requested.empty()) return std::wstring(requested);
  std::wstring stored = JsonGetString(settingsJson, L"opencodePackage");
  return stored.empty() ? std::wstring(builtIn) : stored;
}

}  // namespace qv
