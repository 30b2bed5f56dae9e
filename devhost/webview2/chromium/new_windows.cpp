#include "webview2/chromium/new_windows.h"

namespace qv::devhost {
namespace {

/// Every new page is held by the browser until it is looked at here.
class NewWindows final : public SessionSink {
 public:
  explicit NewWindows(DevToolsClient& client) : client_(client) {}

  void OnEvent(const std::string& method, Json& parameters) override {
    if (method != "Target.attachedToTarget" || !parameters.value("waitingForDebugger", false)) return;
    const Json& target = parameters.at("targetInfo");
    if (target.contains("openerId")) {
      client_.Tell("", "Target.closeTarget", {{"targetId", target.at("targetId")}});
      return;
    }
    const auto session = parameters.at("sessionId").get<std::string>();
    client_.Tell(session, "Runtime.runIfWaitingForDebugger", nullptr);
    client_.Tell("", "Target.detachFromTarget", {{"sessionId", session}});
  }

  void OnLost() override {}

 private:
  DevToolsClient& client_;
};

}  // namespace

void CloseNewWindows(DevToolsClient& client) {
  client.AddSession("", std::make_shared<NewWindows>(client));
  client.Tell("", "Target.setAutoAttach",
              {{"autoAttach", true},
               {"waitForDebuggerOnStart", true},
               {"flatten", true},
               {"filter", {{{"type", "page"}, {"exclude", false}}, {{"exclude", true}}}}});
}

}  // namespace qv::devhost
