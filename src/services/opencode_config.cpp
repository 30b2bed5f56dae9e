#include "services/opencode_config.h"

#include "foundation/json_text.h"
#include "foundation/text.h"
#include "services/agent_kinds.h"
#include "services/json_spans.h"

namespace qv {
namespace {

/// Published by OpenCode, for editors.
constexpr std::wstring_view kSchemaUrl = L"https://opencode.ai/config.json";
constexpr std::wstring_view kModel = L"quorvantis/deepseek-v4-flash";

std::wstring_view BaseUrl(const ProxyAccess& access) {
  return access.baseUrl.empty() ? kDefaultProxyUrl : std::wstring_view(access.baseUrl);
}

}  // namespace

std::wstring OpenCodeConfig(const ProxyAccess& access) {
  return Concat(
      L"{\n"
      L"  \"$schema\": \"",
      kSchemaUrl,
      L"\",\n"
      L"  \"model\": \"",
      kModel,
      L"\",\n"
      L"  \"provider\": {\n"
      L"    \"quorvantis\": {\n"
      L"      \"name\": \"Quorvantis\",\n"
      L"      \"module\": \"npm:@ai-sdk/openai-compatible\",\n"
      L"      \"options\": {\n"
      L"        \"baseURL\": ",
      JsonQuote(BaseUrl(access)),
      L",\n"
      L"        \"apiKey\": ",
      JsonQuote(access.token),
      L"\n"
      L"      },\n"
      L"      \"models\": {\n"
      L"        \"deepseek-v4-flash\": { \"name\": \"DeepSeek V4 Flash\" }\n"
      L"      }\n"
      L"    }\n"
      L"  },\n"
      L"  \"mcp\": {\n"
      L"    \"",
      Widen(kMcpEntryName),
      L"\": {\n"
      L"      \"type\": \"remote\",\n"
      L"      \"url\": \"",
      Widen(kMcpEntryUrl),
      L"\",\n"
      L"      \"enabled\": true\n"
      L"    }\n"
      L"  },\n"
      L"  \"permission\": {\n"
      L"    \"edit\": \"ask\",\n"
      L"    \"bash\": \"ask\",\n"
      L"    \"webfetch\": \"deny\"\n"
      L"  }\n"
      L"}\n");
}

bool OpenCodePointsAtMcpServer(std::string_view json) {
  const auto url = JsonStringAt(json, {"mcp", kMcpEntryName, "url"});
  return url && IsMcpEntryUrl(*url);
}

EnvironmentVariables OpenCodeEnvironment(const ProxyAccess& access, std::wstring_view configPath) {
  return {{L"OPENAI_API_KEY", access.token},
          {L"OPENCODE_MODEL", std::wstring(kModel)},
          {L"OPENAI_BASE_URL", std::wstring(BaseUrl(access))},
          {L"OPENCODE_CONFIG", std::wstring(configPath)}};
}

}  // namespace qv
