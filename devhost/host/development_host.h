#pragma once

#include <memory>
#include <string>

#include "engines/engine.h"
#include "host/addin_library.h"
#include "host/addin_session.h"
#include "host/call_log.h"
#include "host/document_windows.h"
#include "host/pane_list.h"
#include "host/task_pane_factory.h"
#include "host/web_view_library.h"

namespace qv::devhost {

/// Everything that plays the host around one engine: the loaded add-in, its connection, its task panes and
/// the web view stand-in. UI thread, with COM initialised for a single-threaded apartment before and until
/// after it.
class DevelopmentHost {
 public:
  /// What the end looked like. `Clean` when nothing was left behind.
  struct Ending {
    /// Objects of the spreadsheet that are still referenced.
    int liveObjects = 0;
    /// Event sinks that are still connected.
    int eventSinks = 0;
    /// Calls to the spreadsheet that came from a foreign thread.
    int wrongThread = 0;
    ULONG addinReferences = 0;
    ULONG paneReferences = 0;
    ULONG siteReferences = 0;
    std::uint32_t webViewObjects = 0;
    bool canUnload = false;

    [[nodiscard]] bool Clean() const {
      return liveObjects == 0 && eventSinks == 0 && wrongThread == 0 && addinReferences == 0 &&
             paneReferences == 0 && siteReferences == 0 && webViewObjects == 0 && canUnload;
    }
  };

  /// Loads, registers and connects the add-in. The settings file must already name the service. Engine and
  /// log are borrowed. Throws std::runtime_error with the call that failed.
  DevelopmentHost(const std::wstring& addinPath, Engine& engine, CallLog& log,
                  AddinSession::Manner manner = {}, DocumentWindows::Look look = {});
  DevelopmentHost(const DevelopmentHost&) = delete;
  DevelopmentHost& operator=(const DevelopmentHost&) = delete;
  ~DevelopmentHost();

  [[nodiscard]] Engine& Spreadsheet() { return engine_; }
  [[nodiscard]] WebViewLibrary& WebViews() { return webViews_; }
  [[nodiscard]] DocumentWindows& Documents() { return documents_; }
  [[nodiscard]] PaneList& Panes() { return panes_; }
  [[nodiscard]] TaskPaneFactory& Factory() { return *factory_.Get(); }
  [[nodiscard]] const AddinSession& Session() const { return *session_; }
  [[nodiscard]] const CallLog& Log() const { return log_; }

  /// Opens a task pane with the add-in's control in the active window, as a ribbon button would. Throws
  /// std::runtime_error.
  PaneList::Pane OpenPane();
  /// Presses a ribbon button in the active window. The add-in may open boxes with loops of their own before
  /// this comes back.
  void PressButton(const RibbonItem& button);
  /// Runs messages until the pane's page has loaded or its time is over; whether it has.
  [[nodiscard]] bool WaitForPage(const PaneList::Pane& pane, DWORD timeoutMs);

  /// Closes the panes, disconnects and unloads the add-in; the first call only, later ones give its result
  /// again.
  Ending End();

 private:
  void ShowRibbon(Ribbon& ribbon);

  Engine& engine_;
  CallLog& log_;
  AddinLibrary library_;
  WebViewLibrary webViews_;
  DocumentWindows documents_;
  PaneList panes_;
  ComPtr<TaskPaneFactory> factory_;
  std::unique_ptr<AddinSession> session_;
  bool ended_ = false;
  Ending ending_;
};

}  // namespace qv::devhost
