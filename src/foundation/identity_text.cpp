#include "foundation/identity_text.h"

#include <utility>

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// What this version of the add-in can do beyond what every version of the page may expect.
constexpr std::pair<const wchar_t*, bool> kCapabilities[] = {
    {L"pptBilingualSlides", false},
    {L"targetFontBold", true},
    {L"excelBilingualCells", true},
    {L"nativeTranslateViaJs", true},
};

const wchar_t* ArchitectureText(unsigned processorArchitecture) {
  switch (processorArchitecture) {
    case 0:
      return L"x86";
    case 12:
      return L"arm64";
    default:
      return L"x64";
  }
}

const wchar_t* FailureStage(std::wstring_view step) {
  if (Contains(step, L"Controller")) return L"controller";
  if (Contains(step, L"Environment")) return L"environment";
  if (Contains(step, L"UserData")) return L"user_data_dir";
  return L"init";
}

std::wstring BuildObject(std::initializer_list<std::pair<const wchar_t*, const std::wstring*>> members) {
  std::wstring out;
  for (const auto& [name, value] : members)
    out += Concat(out.empty() ? L"{\"" : L",\"", name, L"\":", JsonQuote(*value));
  return out;
}

}  // namespace

std::wstring FormatOsString(unsigned processorArchitecture, std::uint32_t major, std::uint32_t minor,
                            std::uint32_t build) {
  return Concat(FormatOsString(processorArchitecture), L' ', major, L'.', minor, L'.', build);
}

std::wstring FormatOsString(unsigned processorArchitecture) {
  return Concat(L"Windows_NT ", ArchitectureText(processorArchitecture));
}

std::wstring ClientVersionFrom(std::wstring_view versionJson) {
  std::wstring version = JsonGetString(versionJson, L"version");
  return version.empty() ? L"0.0.0" : version;
}

std::wstring BuildClientContext(const ClientFacts& facts) {
  return BuildObject({{L"installId", &facts.installId},
                      {L"channel", &facts.channel},
                      {L"os", &facts.os},
                      {L"hostApp", &facts.hostApp},
                      {L"hostVersion", &facts.hostVersion},
                      {L"clientVersion", &facts.clientVersion}}) +
         L"}";
}

std::wstring BuildClientInfo(const ClientFacts& facts) {
  static const std::wstring productId = L"quorvantis-office-ai";
  static const std::wstring platform = L"windows";
  std::wstring capabilities;
  for (const auto& [name, enabled] : kCapabilities)
    capabilities += Concat(capabilities.empty() ? L"{\"" : L",\"", name, L"\":", BoolWord(enabled));
  return Concat(BuildObject({{L"productId", &productId},
                             {L"platform", &platform},
                             {L"version", &facts.clientVersion},
                             {L"commit", &facts.commit},
                             {L"buildDate", &facts.buildDate},
                             {L"os", &facts.os},
                             {L"installId", &facts.installId},
                             {L"hostApp", &facts.hostApp},
                             {L"hostAppVersion", &facts.hostVersion},
                             {L"hostAppName", &facts.hostAppName}}),
                L",\"capabilities\":", capabilities, L"}}");
}

std::wstring BuildBeaconBody(std::wstring_view event, std::wstring_view clientContext,
                             std::wstring_view source) {
  return Concat(L"{\"events\":[{\"event\":\"", event, L"\",\"context\":", clientContext,
                L",\"outcome\":\"ok\",\"props\":{\"source\":\"",
                source.empty() ? std::wstring_view(L"unknown") : source, L"\"}}]}");
}

std::wstring BuildWebViewFailureBody(std::wstring_view step, std::int32_t hr,
                                     std::wstring_view clientContext) {
  return Concat(L"{\"events\":[{\"event\":\"plugin:error\",\"context\":", clientContext,
                L",\"outcome\":\"error\",\"errorCode\":\"webview2_init\",\"props\":{\"feature\":\"pane\","
                L"\"stage\":\"",
                FailureStage(step), L"\",\"rawErrorCode\":\"0x", Hex8(hr), L"\"}}]}");
}

}  // namespace qv
