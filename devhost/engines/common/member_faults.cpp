#include "engines/common/member_faults.h"

namespace qv::devhost {

std::optional<HostError> MemberFaults::Take(std::string_view className, std::string_view member,
                                            unsigned on) {
  for (MemberFault& fault : faults_) {
    if ((fault.on & on) == 0 || fault.times == 0 || !MatchesMember(fault.member, className, member)) continue;
    if (fault.after > 0) {
      --fault.after;
      continue;
    }
    if (!TakeOne(fault.times)) continue;
    if (fault.slowMs == 0) return fault.error;
    Sleep(fault.slowMs);
  }
  return std::nullopt;
}

bool MatchesMember(std::string_view pattern, std::string_view className, std::string_view member) {
  if (pattern == "*") return true;
  const size_t dot = pattern.find('.');
  if (dot == std::string_view::npos) return false;
  const std::string_view classPattern = pattern.substr(0, dot);
  const std::string_view memberPattern = pattern.substr(dot + 1);
  return (classPattern == "*" || classPattern == className) &&
         (memberPattern == "*" || memberPattern == member);
}

bool TakeOne(long& times) {
  if (times == 0) return false;
  if (times > 0) --times;
  return true;
}

}  // namespace qv::devhost
