#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace qv::devhost::calc {

/// Makes arguments fit for the office, which is no Windows program: paths of files become its own, and
/// whoever pastes gets what the clipboard holds as one more argument.
void FitForOffice(const std::string& type, const std::string& member, nlohmann::json& args,
                  nlohmann::json& named);

}  // namespace qv::devhost::calc
