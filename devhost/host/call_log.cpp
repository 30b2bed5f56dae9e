#include "host/call_log.h"

#include <cstdio>
#include <stdexcept>

#include "foundation/text.h"

namespace qv::devhost {

std::string HresultText(HRESULT result) {
  return ToUtf8(Concat(L"0x", Hex8(result)));
}

void CallLog::Add(std::string line) {
  if (echo_) std::fprintf(stderr, "%s\n", line.c_str());
  lines_.push_back(std::move(line));
}

HRESULT CallLog::Add(const std::string& call, HRESULT result) {
  Add(call + " -> " + HresultText(result));
  return result;
}

void CallLog::Require(const std::string& call, HRESULT result) {
  if (FAILED(Add(call, result))) throw std::runtime_error(call + " failed with " + HresultText(result));
}

}  // namespace qv::devhost
