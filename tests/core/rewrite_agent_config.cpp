// Reads a configuration file from standard input and writes it to standard output as "Connect" would leave
// it: rewrite_agent_config claude|codex. Ends with status 3 when the file is to be left alone.

#include <iostream>
#include <iterator>
#include <string>

#include "foundation/text.h"
#include "services/agent_config.h"

int main(int count, char** arguments) {
  const auto kind = count == 2 ? qv::AgentKindOf(qv::Widen(arguments[1])) : std::nullopt;
  if (!kind) return 2;
  const std::string bytes{std::istreambuf_iterator<char>(std::cin), {}};
  const auto changed = qv::WithMcpEntry(*kind, bytes);
  if (!changed) return 3;
  std::cout << *changed << std::flush;
  return std::cout ? 0 : 1;
}
