#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engines/memory/memory_engine.h"
#include "foundation/access_tokens.h"
#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "service_control.h"
#include "translation/run_controller.h"
#include "translation/translation_session.h"
#include "workbook/target_context.h"

namespace qv {

/// Keeps what the page would get, in order.
class RecordedPage final : public PanelOutput {
 public:
  void RunPanelScript(const std::wstring& script) override;
  void PostPanelJson(const std::wstring& json) override;
  void PostPanelScript(const std::wstring& script) override { RunPanelScript(script); }

  [[nodiscard]] bool Has(std::wstring_view part) const { return Count(part) > 0; }
  [[nodiscard]] int Count(std::wstring_view part) const;
  /// The first script or message that contains the part, else empty.
  [[nodiscard]] std::wstring Find(std::wstring_view part) const;

  std::vector<std::wstring> received;
  /// Called at every script and message, after it was kept.
  std::function<void(const std::wstring&)> onReceived;
};

/// One pane with a window, a page that is recorded, and a run controller.
class TestPane {
 public:
  explicit TestPane(IDispatch* application, Patience patience = {});
  TestPane(const TestPane&) = delete;
  TestPane& operator=(const TestPane&) = delete;
  ~TestPane();

  /// What the control does when its window goes away.
  void Close();
  /// Starts a run; `members` are added to the message.
  void Start(const std::wstring& members = {}, std::wstring_view action = L"start");
  void Token(std::wstring_view token) { static_cast<void>(tokens.Store(token)); }

  std::shared_ptr<PaneContext> context = std::make_shared<PaneContext>(1);
  RecordedPage page;
  TargetContext target;
  AccessTokens tokens;
  TranslationSession session;
  std::unique_ptr<RunController> controller;

 private:
  HWND window_ = nullptr;
};

/// A workbook in memory, the local service, and one pane. After each test the host must be as before: alerts
/// and screen updating on, no workbook claimed, no object left.
class RunTest : public testing::Test {
 protected:
  RunTest();
  void SetUp() override;
  void TearDown() override;

  /// Runs the message loop until the condition holds; false after ten seconds.
  /// The condition may also come true without a message.
  [[nodiscard]] static bool PumpUntil(const std::function<bool()>& condition);
  /// Runs the loop until the page of the pane got a script with that part.
  [[nodiscard]] bool PumpUntilPageHas(std::wstring_view part);

  /// Waits until a worker has posted to the pane, without running what it posted; false after ten seconds.
  [[nodiscard]] static bool WaitForPostedTask();

  void Set(std::string_view address, const wchar_t* text) { engine->Set(L"", address, std::wstring(text)); }
  /// Texts A1, A2, … of the given number, each its own.
  void FillRows(int count);
  [[nodiscard]] std::wstring Text(const std::string& address, const std::wstring& sheet = {});

  ServiceControl service;
  std::unique_ptr<devhost::MemoryEngine> engine = std::make_unique<devhost::MemoryEngine>();
  std::unique_ptr<TestPane> pane;
};

}  // namespace qv
