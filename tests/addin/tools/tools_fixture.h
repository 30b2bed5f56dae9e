#pragma once

#include <memory>
#include <optional>
#include <string>

#include "addin/workbook/workbook_fixture.h"
#include "foundation/pane_context.h"
#include "tools/workbook_tools.h"

namespace qv::test {

/// A message-only window that runs the tasks of a queue.
class TaskWindow {
 public:
  explicit TaskWindow(UiTaskQueue& queue);
  TaskWindow(const TaskWindow&) = delete;
  TaskWindow& operator=(const TaskWindow&) = delete;
  ~TaskWindow();

  [[nodiscard]] HWND Handle() const { return window_; }

 private:
  HWND window_ = nullptr;
};

/// Handles every message that waits.
void PumpMessages();

/// The tools of a pane that is pinned to "Book.xlsx" in the memory engine.
class ToolsTest : public WorkbookTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  [[nodiscard]] std::wstring Run(std::wstring_view action, const std::wstring& json = L"{}") {
    return tools->RunWorkbookTool(action, json);
  }
  /// The cell as the engine describes it.
  [[nodiscard]] nlohmann::json CellAt(const std::string& address, const std::wstring& sheet = L"Sheet1") {
    return engine.Cell(sheet, address);
  }
  /// A property of a range, as the host answers it.
  [[nodiscard]] Variant Look(const std::string& address, const wchar_t* property) {
    Variant value;
    EXPECT_EQ(GetProperty(engine.RangeObject(L"Sheet1", address).Get(), property, value), S_OK);
    return value;
  }
  [[nodiscard]] std::int32_t Number(const std::string& address, const wchar_t* property) {
    return IntegerOf(Look(address, property));
  }
  /// Locks every cell of the sheet but those at an address.
  void ProtectAllBut(const std::string& address);
  /// The host refuses the member as busy until the faults are cleared.
  void MakeBusy(const std::string& member);

  std::shared_ptr<PaneContext> pane = std::make_shared<PaneContext>(1);
  TaskWindow window{pane->Tasks()};
  RecordingPanel panel;
  std::optional<WorkbookTools> tools;
};

/// {"error":"…"}
[[nodiscard]] std::wstring Error(std::wstring_view message);

}  // namespace qv::test
