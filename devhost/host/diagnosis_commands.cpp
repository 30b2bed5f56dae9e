#include <stdexcept>

#include "foundation/text.h"
#include "host/clipboard_text.h"
#include "host/command.h"
#include "host/picture.h"
#include "host/screen_capture.h"
#include "host/trace_logs.h"
#include "host/windows_path.h"

namespace qv::devhost {
namespace {

Json Screenshot(CommandContext& context, const Json& members) {
  auto& documents = context.host.Documents();
  if (!documents.IsShown())
    throw std::runtime_error("there is no window on the screen: start the host with --window");
  SavePng(CaptureWindow(documents.TopWindow()).Get(), ToWindowsPath(TextMember(members, "path")));
  return OkAnswer();
}

/// The text on the clipboard, after it was put there if one is given.
Json Clipboard(CommandContext&, const Json& members) {
  if (members.contains("text") && !PutClipboardText(TextMember(members, "text")))
    throw std::runtime_error("the clipboard cannot be had");
  Json answer = OkAnswer();
  const auto text = ClipboardText();
  answer["text"] = text ? Json(ToUtf8(*text)) : Json(nullptr);
  return answer;
}

}  // namespace

void AddDiagnosisCommands(CommandHandlers& handlers) {
  handlers["log"] = [](CommandContext&, const Json&) {
    Json answer = OkAnswer();
    answer["paths"] = TraceLogPaths();
    return answer;
  };
  handlers["calls"] = [](CommandContext& context, const Json&) {
    Json answer = OkAnswer();
    answer["calls"] = context.host.Log().Lines();
    return answer;
  };
  handlers["screenshot"] = Screenshot;
  handlers["clipboard"] = Clipboard;
  handlers["sync"] = [](CommandContext& context, const Json&) {
    auto& documents = context.host.Documents();
    if (!documents.Refresh()) throw std::runtime_error("the spreadsheet does not show its sheets now");
    documents.Repaint();
    return OkAnswer();
  };
}

}  // namespace qv::devhost
