#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qv {

/// What the add-in tells the service about itself. Every member is plain text.
struct ClientFacts {
  std::wstring installId;
  std::wstring channel;
  std::wstring os;
  std::wstring hostApp;
  std::wstring hostVersion;
  std::wstring clientVersion;
  std::wstring commit;
  std::wstring buildDate;
  std::wstring hostAppName;
};

/// "Windows_NT x64 10.0.22631" for processor architecture 0 → "x86", 12 → "arm64", else "x64".
[[nodiscard]] std::wstring FormatOsString(unsigned processorArchitecture, std::uint32_t major,
                                          std::uint32_t minor, std::uint32_t build);
/// The same when the version is unknown.
[[nodiscard]] std::wstring FormatOsString(unsigned processorArchitecture);

/// The "version" member of a version file's text; "0.0.0" when it is absent or empty.
[[nodiscard]] std::wstring ClientVersionFrom(std::wstring_view versionJson);

/// The client context object that travels with every request and event.
[[nodiscard]] std::wstring BuildClientContext(const ClientFacts& facts);

/// The client information object that the panel asks for.
[[nodiscard]] std::wstring BuildClientInfo(const ClientFacts& facts);

/// Body of one successful event; `source` empty means "unknown".
[[nodiscard]] std::wstring BuildBeaconBody(std::wstring_view event, std::wstring_view clientContext,
                                           std::wstring_view source);

/// Body of the event sent when the panel's browser cannot start; the stage is derived from the step's text.
[[nodiscard]] std::wstring BuildWebViewFailureBody(std::wstring_view step, std::int32_t hr,
                                                   std::wstring_view clientContext);

}  // namespace qv
