// The add-in's proxy for language models by itself, without host and pane, driven line by line:
//   qv_llm_proxy SERVICE_URL PORT [AUTHORITY_PEM]
// Reads "prepare TOKEN", "token TOKEN" or "stop" from standard input, where TOKEN may be empty, and answers
// each with a line: "key KEY" or "failed" for the first, "done" for the others. Ends with its input.

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include "foundation/text.h"
#include "host/command_line.h"
#include "host/trusted_authority.h"
#include "host/windows_path.h"
#include "services/llm_proxy.h"

namespace qv::devhost {
namespace {

constexpr int kUsageExitCode = 2;

std::string Answer(LlmProxy& proxy, const ServiceEndpoint& service, const std::string& line) {
  const std::size_t space = line.find(' ');
  const std::string command = line.substr(0, space);
  const std::wstring token = space == std::string::npos ? L"" : FromUtf8(line.substr(space + 1));
  if (command == "prepare")
    return proxy.PrepareLlmProxy(token, service) ? "key " + ToUtf8(proxy.GetProxyToken()) : "failed";
  if (command == "token") {
    proxy.SetProxyAccessToken(token);
  } else if (command == "stop") {
    proxy.Stop();
  } else {
    return "unknown command";
  }
  return "done";
}

int Run(int count, char** arguments) {
  const auto address = count == 3 || count == 4 ? ParseServiceAddress(arguments[1]) : std::nullopt;
  if (!address) {
    std::fputs("usage: qv_llm_proxy SERVICE_URL PORT [AUTHORITY_PEM]\n", stderr);
    return kUsageExitCode;
  }
  if (count == 4) TrustAuthority(ToWindowsPath(FromUtf8(arguments[3])));
  const ServiceEndpoint service{FromUtf8(address->host), static_cast<std::uint16_t>(address->port),
                                address->scheme == "https"};
  LlmProxy proxy(static_cast<std::uint16_t>(std::strtoul(arguments[2], nullptr, 10)));
  for (std::string line; std::getline(std::cin, line);)
    std::cout << Answer(proxy, service, line) << std::endl;
  return EXIT_SUCCESS;
}

}  // namespace
}  // namespace qv::devhost

int main(int count, char** arguments) {
  try {
    return qv::devhost::Run(count, arguments);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "qv_llm_proxy: %s\n", failure.what());
    return EXIT_FAILURE;
  }
}
