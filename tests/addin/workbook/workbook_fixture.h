#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <ios>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engines/memory/memory_engine.h"
#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "workbook/collector.h"
#include "workbook/target_context.h"

namespace qv::test {

/// Keeps the scripts that were run; `onScript` may do more at each.
class RecordingPanel final : public PanelOutput {
 public:
  void RunPanelScript(const std::wstring& script) override {
    scripts.push_back(script);
    if (onScript) onScript();
  }
  void PostPanelJson(const std::wstring&) override {}
  void PostPanelScript(const std::wstring&) override {}

  std::vector<std::wstring> scripts;
  std::function<void()> onScript;
};

/// What was written to the pane trace since this object was made.
class TraceTail {
 public:
  TraceTail();
  [[nodiscard]] std::wstring Text() const;
  [[nodiscard]] bool Has(const std::wstring& line) const { return Text().find(line) != std::wstring::npos; }

 private:
  std::streamoff start_ = 0;
};

/// A workbook "Book.xlsx" with the sheets "Sheet1" and "Data" in the memory engine, and a pane's target on
/// it. Every test ends with no host object left and the host's flags as they were.
class WorkbookTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  void Pin() { target.Pin(ExcelWindow::ResolveForInvocation(engine.Application(), nullptr)); }
  void SetText(const std::string& address, const std::wstring& text) { engine.Set(L"Sheet1", address, text); }

  devhost::MemoryEngine engine;
  std::shared_ptr<devhost::memory::Workbook> book;
  TargetContext target;
};

}  // namespace qv::test
