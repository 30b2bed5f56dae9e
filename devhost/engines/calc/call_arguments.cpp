#include "engines/calc/call_arguments.h"

#include <string_view>

#include "engines/calc/base64.h"
#include "engines/calc/dispatch_names.h"
#include "engines/calc/office_path.h"
#include "engines/common/clipboard_image.h"
#include "foundation/text.h"

namespace qv::devhost::calc {

using nlohmann::json;

namespace {

/// A member whose first argument is the path of a file, by class and by name in lower case.
struct PathMember {
  std::string_view type;
  std::string_view member;
  std::string_view argument;
};

constexpr PathMember kPathMembers[] = {
    {"Shapes", "addpicture", "filename"},
    {"FillFormat", "userpicture", "picturefile"},
    {"Chart", "export", "filename"},
};

void FitPath(json& argument) {
  if (argument.is_string()) argument = OfficePath(FromUtf8(argument.get<std::string>()));
}

}  // namespace

void FitForOffice(const std::string& type, const std::string& member, json& args, json& named) {
  const std::string name = LowerAscii(member);
  for (const PathMember& path : kPathMembers) {
    if (path.type != type || path.member != name) continue;
    if (!args.empty()) FitPath(args[0]);
    for (auto& [key, value] : named.items()) {
      if (LowerAscii(key) == path.argument) FitPath(value);
    }
  }
  if (type != "Chart" || name != "paste") return;
  const std::string image = ImageFileFromClipboard();
  if (!image.empty()) named["clipboard"] = {{"image", Base64(image)}};
}

}  // namespace qv::devhost::calc
