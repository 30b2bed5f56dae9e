#include "host/development_host.h"

#include "host/class_registration.h"
#include "host/message_pump.h"
#include "host/windows_path.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kPaneProgId[] = L"Quorvantis.ExcelPane";
constexpr wchar_t kPaneTitle[] = L"Quorvantis";
/// Workers of the add-in may sit in a network call that only the service's end or a time-out takes away.
constexpr DWORD kUnloadTimeoutMs = 15'000;

}  // namespace

DevelopmentHost::DevelopmentHost(const std::wstring& addinPath, Engine& engine, CallLog& log,
                                 AddinSession::Manner manner, DocumentWindows::Look look)
    : engine_(engine),
      log_(log),
      library_(addinPath, log),
      webViews_(FolderOf(addinPath)),
      documents_(engine, look),
      panes_(documents_, log) {
  const NamedLock classes = LockClasses();
  library_.Register();
  factory_ = MakeCom<TaskPaneFactory>(panes_, engine_.Application());
  session_ = std::make_unique<AddinSession>(engine_.Application(), factory_.Get(), manner, log_);
  if (Ribbon* ribbon = session_->TheRibbon()) ShowRibbon(*ribbon);
}

void DevelopmentHost::ShowRibbon(Ribbon& ribbon) {
  ribbon.SetContext([this]() -> ComPtr<IDispatch> {
    const int active = documents_.Active().Id();
    return active == 0 ? nullptr : engine_.WindowObject(active);
  });
  ribbon.OnChanged([this, &ribbon] { documents_.SetRibbon(&ribbon); });
  documents_.SetRibbon(&ribbon);
}

DevelopmentHost::~DevelopmentHost() {
  static_cast<void>(End());
}

PaneList::Pane DevelopmentHost::OpenPane() {
  documents_.Sync();
  return panes_.Open(kPaneProgId, kPaneTitle, true, documents_.Active());
}

void DevelopmentHost::PressButton(const RibbonItem& button) {
  documents_.Sync();
  const int active = documents_.Active().Id();
  session_->TheRibbon()->Press(button, active == 0 ? nullptr : engine_.WindowObject(active));
}

bool DevelopmentHost::WaitForPage(const PaneList::Pane& pane, DWORD timeoutMs) {
  return PumpUntil(
      [&] {
        const auto views = webViews_.ViewsIn(pane.frame->Window());
        return !views.empty() && std::wstring_view(views.front().source) != L"about:blank";
      },
      timeoutMs);
}

DevelopmentHost::Ending DevelopmentHost::End() {
  if (std::exchange(ended_, true)) return ending_;
  if (session_) session_->BeginShutdown();
  panes_.CloseAll();
  documents_.SetRibbon(nullptr);
  if (session_) ending_.addinReferences = session_->Disconnect();
  session_.reset();
  if (factory_) factory_->Detach();
  factory_.Reset();
  ending_.canUnload = library_.WaitUntilUnloadable(kUnloadTimeoutMs);
  DispatchWaitingMessages();
  ending_.paneReferences = panes_.Leaks().control;
  ending_.siteReferences = panes_.Leaks().site;
  ending_.webViewObjects = webViews_.Control().LiveObjects();
  const auto counters = engine_.Counters();
  ending_.liveObjects = counters.value("live", 0);
  ending_.eventSinks = counters.value("sinks", 0);
  ending_.wrongThread = counters.value("wrongThread", 0);
  if (ending_.canUnload) library_.Unload();
  return ending_;
}

}  // namespace qv::devhost
