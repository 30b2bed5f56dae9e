#include "addin_test.h"

#include <array>
#include <vector>

#include "foundation/text.h"
#include "foundation/unique_handle.h"
#include "host/message_pump.h"
#include "host/settings_file.h"
#include "host/trace_logs.h"

namespace qv {
namespace {

constexpr UINT kBoxTimerMs = 20;

BoxAnswerer* g_answerer = nullptr;

/// The whole pane trace log as UTF-16.
std::wstring ReadPaneLog() {
  const std::wstring path = FromUtf8(devhost::TraceLogPaths().front());
  const UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return {};
  std::wstring text(GetFileSize(file.Get(), nullptr) / sizeof(wchar_t), L'\0');
  DWORD read = 0;
  if (!ReadFile(file.Get(), text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &read, nullptr))
    return {};
  text.resize(read / sizeof(wchar_t));
  return text;
}

}  // namespace

std::wstring AddinPath() {
  std::array<wchar_t, MAX_PATH> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  const std::wstring program(path.data());
  return program.substr(0, program.rfind(L'\\')) + L"\\QuorvantisExcel.dll";
}

BoxAnswerer::BoxAnswerer() {
  g_answerer = this;
  timer_ = SetTimer(nullptr, 0, kBoxTimerMs, &BoxAnswerer::OnTimer);
}

BoxAnswerer::~BoxAnswerer() {
  KillTimer(nullptr, timer_);
  g_answerer = nullptr;
}

void CALLBACK BoxAnswerer::OnTimer(HWND, UINT, UINT_PTR, DWORD) noexcept {
  EnumThreadWindows(GetCurrentThreadId(), &BoxAnswerer::Answer, 0);
}

BOOL CALLBACK BoxAnswerer::Answer(HWND window, LPARAM) noexcept {
  std::array<wchar_t, 16> className{};
  GetClassNameW(window, className.data(), static_cast<int>(className.size()));
  if (g_answerer == nullptr || std::wstring_view(className.data()) != L"#32770" || !IsWindowVisible(window))
    return TRUE;
  ++g_answerer->count_;
  g_answerer->last_ = devhost::ReadBox(window);
  g_answerer->owner_ = GetWindow(window, GW_OWNER);
  if (const auto inside = std::exchange(g_answerer->inside_, nullptr)) inside();
  // A box that lacks the wanted button has the other one.
  const int button = GetDlgItem(window, g_answerer->button_) != nullptr ? g_answerer->button_ : IDOK;
  SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(button), 0);
  return TRUE;
}

AddinTest::AddinTest() {
  OleInitialize(nullptr);
  devhost::WriteServiceAddress(devhost::kNoService);
  logStart_ = ReadPaneLog().size();
}

AddinTest::~AddinTest() {
  OleUninitialize();
}

void AddinTest::TearDown() {
  pane_ = {};
  if (host_ == nullptr) return;
  const devhost::DevelopmentHost::Ending ending = host_->End();
  EXPECT_EQ(ending.liveObjects, 0);
  EXPECT_EQ(ending.addinReferences, 0U);
  EXPECT_EQ(ending.paneReferences, 0U);
  EXPECT_EQ(ending.siteReferences, 0U);
  EXPECT_EQ(ending.webViewObjects, 0U);
  EXPECT_TRUE(ending.canUnload);
  host_.reset();
}

void AddinTest::Connect(devhost::AddinSession::Manner manner) {
  host_ = std::make_unique<devhost::DevelopmentHost>(AddinPath(), engine_, calls_, manner);
  Browser().ResetBehaviour();
  itemsSeen_ = itemsBefore_ = Browser().ItemCount();
}

std::uint32_t AddinTest::OpenPane() {
  if (host_ == nullptr) Connect();
  pane_ = host_->OpenPane();
  EXPECT_TRUE(host_->WaitForPage(pane_, kTimeoutMs));
  // The page is settled once it was offered the token.
  EXPECT_NE(WaitForItem(devhost::PageItemKind::kJson, L"\"accessToken\""), "");
  return NewestView().view;
}

devhost::ViewInfo AddinTest::NewestView() {
  const auto views = host_->WebViews().ViewsIn(pane_.frame->Window());
  EXPECT_EQ(views.size(), 1U);
  return views.empty() ? devhost::ViewInfo{} : views.front();
}

void AddinTest::Post(std::uint32_t view, const std::wstring& message) {
  const std::string before = Log();
  EXPECT_TRUE(Browser().PostPageString(view, message.c_str(), nullptr));
  EXPECT_TRUE(devhost::PumpUntil(
      [&] { return Log().find("WebMessageReceived hr=0x0 ", before.size()) != std::string::npos; },
      kTimeoutMs));
  devhost::DispatchWaitingMessages();
}

std::string AddinTest::WaitForItem(devhost::PageItemKind kind, std::wstring_view part) {
  std::string found;
  const bool came = devhost::PumpUntil(
      [&] {
        devhost::PageItem item{};
        while (Browser().Item(itemsSeen_, &item)) {
          ++itemsSeen_;
          if (item.kind != kind || !Contains(item.text, part)) continue;
          found = ToUtf8(item.text);
          return true;
        }
        return false;
      },
      kTimeoutMs);
  return came ? found : std::string();
}

bool AddinTest::WasSent(std::wstring_view part) {
  devhost::DispatchWaitingMessages();
  devhost::PageItem item{};
  for (std::uint64_t index = itemsBefore_; Browser().Item(index, &item); ++index) {
    if (Contains(item.text, part)) return true;
  }
  return false;
}

std::string AddinTest::Log() const {
  const std::wstring log = ReadPaneLog();
  return ToUtf8(std::wstring_view(log).substr(std::min(logStart_, log.size())));
}

bool AddinTest::WaitForLog(std::string_view part) const {
  return devhost::PumpUntil([&] { return Log().find(part) != std::string::npos; }, kTimeoutMs);
}

testing::AssertionResult InOrder(const std::string& text, std::initializer_list<const char*> parts) {
  std::size_t at = 0;
  for (const char* part : parts) {
    at = text.find(part, at);
    if (at == std::string::npos)
      return testing::AssertionFailure() << "no \"" << part << "\" in its place in\n" << text;
    at += std::string_view(part).size();
  }
  return testing::AssertionSuccess();
}

}  // namespace qv
