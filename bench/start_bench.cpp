// What the host waits for when it starts with the add-in, and what a user waits for until the first pane
// begins to start its browser. "First" is the first time in this process, with the DLL not loaded yet.
// Nothing but a recorder stands behind the web view.

#include <ole2.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "addin/office_interfaces.h"
#include "engines/memory/memory_engine.h"
#include "foundation/file_io.h"
#include "foundation/text.h"
#include "foundation/variant.h"
#include "host/addin_library.h"
#include "host/development_host.h"
#include "host/settings_file.h"
#include "host/trace_logs.h"
#include "host/windows_path.h"
#include "measure.h"
#include "ole_program.h"

namespace qv::bench {
namespace {

constexpr int kWarmRounds = 50;
constexpr DWORD kUnloadLimitMs = 15'000;
constexpr wchar_t kAddin[] = L"\\QuorvantisExcel.dll";
constexpr std::int64_t kDayMs = 24 * 3600 * 1000;

/// The add-in as the registry gives it: registered, and not loaded.
void RegisterOnly(const std::wstring& path) {
  devhost::CallLog calls;
  devhost::AddinLibrary library(path, calls);
  library.Register();
  Require(library.WaitUntilUnloadable(kUnloadLimitMs), "the DLL stays in use");
  library.Unload();
  Require(GetModuleHandleW(kAddin + 1) == nullptr, "the DLL stays loaded");
}

/// One connection as far as the ribbon, which is what a starting host waits for.
struct Connection {
  ComPtr<IDTExtensibility2> addin;
  Bstr ribbon;
};

Connection Connect(IDispatch* application) {
  Connection made;
  CLSID classId{};
  ComPtr<IRibbonExtensibility> ribbon;
  const Bstr id(L"Microsoft.Excel.Workbook");
  Require(SUCCEEDED(CLSIDFromProgID(L"ExcelAddin.Connect", &classId)) &&
              SUCCEEDED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDTExtensibility2),
                                         reinterpret_cast<void**>(made.addin.GetAddressOf()))),
          "the add-in cannot be created");
  Require(SUCCEEDED(made.addin->OnConnection(application, ext_cm_Startup, nullptr, nullptr)),
          "OnConnection fails");
  Require(SUCCEEDED(made.addin->QueryInterface(__uuidof(IRibbonExtensibility),
                                               reinterpret_cast<void**>(ribbon.GetAddressOf()))) &&
              SUCCEEDED(ribbon->GetCustomUI(id.Get(), made.ribbon.Put())) && !made.ribbon.View().empty(),
          "there is no ribbon");
  return made;
}

void Disconnect(Connection& made) {
  Require(SUCCEEDED(made.addin->OnStartupComplete(nullptr)) &&
              SUCCEEDED(made.addin->OnBeginShutdown(nullptr)) &&
              SUCCEEDED(made.addin->OnDisconnection(ext_dm_HostShutdown, nullptr)),
          "the add-in cannot be disconnected");
  made.addin.Reset();
}

struct Times {
  double connect;
  double whole;
};

Times MeasureConnection(IDispatch* application) {
  std::optional<Connection> made;
  const double connect = Milliseconds([&] { made = Connect(application); });
  const double rest = Milliseconds([&] { Disconnect(*made); });
  return {connect, connect + rest};
}

void ReportConnections(devhost::MemoryEngine& engine) {
  const Times first = MeasureConnection(engine.Application());
  std::vector<double> connect;
  std::vector<double> whole;
  for (int round = 0; round < kWarmRounds; ++round) {
    const Times times = MeasureConnection(engine.Application());
    connect.push_back(times.connect);
    whole.push_back(times.whole);
  }
  Row("connect as far as the ribbon, first", first.connect, "ms");
  Row("connect as far as the ribbon, again", Median(connect), "ms");
  Row("connect and disconnect, first", first.whole, "ms");
  Row("connect and disconnect, again", Median(whole), "ms");
}

/// Milliseconds since midnight, by the clock that stamps the trace log.
std::int64_t TimeOfDay() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return ((now.wHour * 60LL + now.wMinute) * 60 + now.wSecond) * 1000 + now.wMilliseconds;
}

/// The pane trace log, UTF-16.
std::wstring PaneLogText() {
  std::string bytes;
  static_cast<void>(ReadWholeFile(FromUtf8(devhost::TraceLogPaths().front()), bytes));
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  return text;
}

/// When the first line behind `start` that contains `part` was written, in milliseconds since midnight. Lines
/// begin with "[yyyy-mm-dd hh:mm:ss.mmm".
std::int64_t StampOf(const std::wstring& log, std::size_t start, const wchar_t* part) {
  const std::size_t found = log.find(part, start);
  Require(found != std::wstring::npos, "the log lacks a line");
  const std::size_t line = log.rfind(L'\n', found) + 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
  const std::string clock = ToUtf8(log.substr(line + 12, 12));
  Require(std::sscanf(clock.c_str(), "%2d:%2d:%2d.%3d", &hour, &minute, &second, &millisecond) == 4,
          "the log's line has no time");
  return ((hour * 60LL + minute) * 60 + second) * 1000 + millisecond;
}

void ReportFirstPane(const std::wstring& path, devhost::MemoryEngine& engine) {
  devhost::CallLog calls;
  devhost::DevelopmentHost host(path, engine, calls);
  const devhost::RibbonItem* button = host.Session().TheRibbon()->Find(L"btnTranslateFullDoc");
  Require(button != nullptr, "the ribbon lacks the button");
  const std::size_t logged = PaneLogText().size();
  const std::int64_t pressed = TimeOfDay();
  host.PressButton(*button);
  const std::wstring log = PaneLogText();
  const std::int64_t begun = StampOf(log, logged, L"InitWebView begin");
  Require(log.find(L"Excel CreateCTP OK", logged) != std::wstring::npos, "no pane was created");
  Require(host.End().Clean(), "something was left behind");
  Row("first pane, press to start of the browser", static_cast<double>((begun - pressed + kDayMs) % kDayMs),
      "ms");
}

void Run() {
  const std::wstring path = devhost::ProgramFolder() + kAddin;
  devhost::WriteServiceAddress(devhost::kNoService);
  devhost::MemoryEngine engine(devhost::HostStyle::kExcel);
  engine.AddWorkbook(L"bench.xlsx", L"c:\\books");
  RegisterOnly(path);
  ReportConnections(engine);
  ReportFirstPane(path, engine);
}

}  // namespace
}  // namespace qv::bench

int main() {
  return qv::bench::RunOleProgram(qv::bench::Run);
}
