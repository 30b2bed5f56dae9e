#include "host/command_line.h"

#include <charconv>
#include <functional>
#include <map>
#include <string_view>

#include "foundation/text.h"

namespace qv::devhost {
namespace {

std::optional<std::uint16_t> ParsePort(std::string_view text) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (error != std::errc() || end != text.data() + text.size() || port == 0) return std::nullopt;
  return port;
}

/// Takes one option's value; false when the value is not acceptable.
using Setter = std::function<bool(Options&, const std::wstring&)>;

struct OptionRule {
  /// What the value must be; null for an option without one.
  const char* expected;
  Setter set;
};

const std::map<std::wstring, OptionRule>& OptionTable() {
  static const std::map<std::wstring, OptionRule> kTable = {
      {L"--addin", {"a path", [](Options& o, const std::wstring& v) { return o.addin = v, !v.empty(); }}},
      {L"--workbook",
       {"a path", [](Options& o, const std::wstring& v) { return o.workbook = v, !v.empty(); }}},
      {L"--engine",
       {"calc or memory",
        [](Options& o, const std::wstring& v) {
          o.engine = v == L"calc" ? EngineKind::kCalc : EngineKind::kMemory;
          return v == L"calc" || v == L"memory";
        }}},
      {L"--browser",
       {"chromium or recorder",
        [](Options& o, const std::wstring& v) {
          o.browser = v == L"chromium" ? BrowserKind::kChromium : BrowserKind::kRecorder;
          return v == L"chromium" || v == L"recorder";
        }}},
      {L"--window", {nullptr, [](Options& o, const std::wstring&) { return o.window = true; }}},
      {L"--no-pane", {nullptr, [](Options& o, const std::wstring&) { return o.noPane = true; }}},
      {L"--host",
       {"excel or wps",
        [](Options& o, const std::wstring& v) {
          o.host = v == L"wps" ? HostStyle::kWps : HostStyle::kExcel;
          return v == L"wps" || v == L"excel";
        }}},
      {L"--service",
       {"http://HOST[:PORT] or https://HOST[:PORT]",
        [](Options& o, const std::wstring& v) {
          const auto address = ParseServiceAddress(ToUtf8(v));
          if (address) o.service = *address;
          return address.has_value();
        }}},
      {L"--authority",
       {"a path", [](Options& o, const std::wstring& v) { return o.authority = v, !v.empty(); }}},
      {L"--calc-port",
       {"a port from 1 to 65535",
        [](Options& o, const std::wstring& v) {
          const auto port = ParsePort(ToUtf8(v));
          if (port) o.calcPort = *port;
          return port.has_value();
        }}},
  };
  return kTable;
}

}  // namespace

std::optional<ServiceAddress> ParseServiceAddress(const std::string& url) {
  const auto mark = url.find("://");
  if (mark == std::string::npos) return std::nullopt;
  ServiceAddress address{url.substr(0, mark), url.substr(mark + 3), 0};
  if (address.scheme != "http" && address.scheme != "https") return std::nullopt;
  address.port = address.scheme == "https" ? 443 : 80;
  if (address.host.ends_with('/')) address.host.pop_back();
  if (const auto colon = address.host.find(':'); colon != std::string::npos) {
    const auto port = ParsePort(std::string_view(address.host).substr(colon + 1));
    if (!port) return std::nullopt;
    address.port = *port;
    address.host.resize(colon);
  }
  if (address.host.empty() || address.host.find_first_of("/?#@ ") != std::string::npos) return std::nullopt;
  return address;
}

std::optional<Options> ParseCommandLine(const std::vector<std::wstring>& arguments, std::string& error) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto rule = OptionTable().find(arguments[i]);
    const std::string name = ToUtf8(arguments[i]);
    if (rule == OptionTable().end()) {
      error = "unknown option " + name;
      return std::nullopt;
    }
    if (rule->second.expected == nullptr) {
      static_cast<void>(rule->second.set(options, {}));
      continue;
    }
    if (i + 1 == arguments.size()) {
      error = name + " needs " + rule->second.expected;
      return std::nullopt;
    }
    if (const auto& value = arguments[++i]; !rule->second.set(options, value)) {
      error = name + " needs " + rule->second.expected + ", not \"" + ToUtf8(value) + "\"";
      return std::nullopt;
    }
  }
  if (options.engine == EngineKind::kCalc && options.calcPort == 0) {
    error = "--engine calc needs --calc-port, the port of the office server";
    return std::nullopt;
  }
  return options;
}

}  // namespace qv::devhost
