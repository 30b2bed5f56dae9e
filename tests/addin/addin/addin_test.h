#pragma once

#include <gtest/gtest.h>
#include <ole2.h>
#include <windows.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "engines/memory/memory_engine.h"
#include "foundation/variant.h"
#include "host/development_host.h"
#include "host/open_box.h"
#include "panel/webview2_interfaces.h"

namespace qv {

/// Full path of the add-in's DLL, which lies beside the test program.
[[nodiscard]] std::wstring AddinPath();

/// Answers every message box of this thread while it lives, from inside the box's own loop.
class BoxAnswerer {
 public:
  BoxAnswerer();
  BoxAnswerer(const BoxAnswerer&) = delete;
  BoxAnswerer& operator=(const BoxAnswerer&) = delete;
  ~BoxAnswerer();

  /// The button that is pressed from now on, IDOK at first.
  void AnswerWith(int button) { button_ = button; }

  /// Runs once inside the next box's loop, before the box is answered.
  void InsideTheNext(std::function<void()> body) { inside_ = std::move(body); }

  [[nodiscard]] int Count() const { return count_; }
  [[nodiscard]] const std::wstring& Title() const { return last_.title; }
  [[nodiscard]] const std::wstring& Text() const { return last_.text; }
  [[nodiscard]] const std::vector<std::string>& Buttons() const { return last_.buttons; }
  [[nodiscard]] const std::string& Icon() const { return last_.icon; }
  [[nodiscard]] HWND Owner() const { return owner_; }

 private:
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) noexcept;
  static BOOL CALLBACK Answer(HWND window, LPARAM) noexcept;

  UINT_PTR timer_ = 0;
  int button_ = IDOK;
  int count_ = 0;
  devhost::BoxContent last_;
  HWND owner_ = nullptr;
  std::function<void()> inside_;
};

/// The real DLL in a host with the in-memory spreadsheet. After each test the host ends, and nothing may be
/// left: no object of the spreadsheet, the add-in, the pane or the web view.
class AddinTest : public testing::Test {
 protected:
  AddinTest();
  ~AddinTest() override;
  void TearDown() override;

  /// Loads, registers and connects the add-in.
  void Connect(devhost::AddinSession::Manner manner = {});
  /// Opens a pane and waits for its page; the number of its web view.
  std::uint32_t OpenPane();
  [[nodiscard]] devhost::WebViewControl& Browser() { return host_->WebViews().Control(); }
  /// Only web view of the newest pane, as it is now.
  [[nodiscard]] devhost::ViewInfo NewestView();

  /// Posts a page message as the view's own page would and waits until it was taken.
  void Post(std::uint32_t view, const std::wstring& message);
  /// The first script, message or address sent to a page since the last call that contains `part`; empty when
  /// none comes in time.
  std::string WaitForItem(devhost::PageItemKind kind, std::wstring_view part);
  /// Whether anything that contains `part` was sent to a page since the test began.
  [[nodiscard]] bool WasSent(std::wstring_view part);

  /// The pane trace log since the test began, in UTF-8.
  [[nodiscard]] std::string Log() const;
  [[nodiscard]] bool WaitForLog(std::string_view part) const;

  static constexpr DWORD kTimeoutMs = 10'000;

  BoxAnswerer boxes_;
  devhost::CallLog calls_;
  devhost::MemoryEngine engine_{devhost::HostStyle::kExcel};
  std::unique_ptr<devhost::DevelopmentHost> host_;
  devhost::PaneList::Pane pane_{};

 private:
  std::size_t logStart_ = 0;
  std::uint64_t itemsSeen_ = 0;
  std::uint64_t itemsBefore_ = 0;
};

/// Whether the parts occur in the text one after the other.
testing::AssertionResult InOrder(const std::string& text, std::initializer_list<const char*> parts);

}  // namespace qv
