#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engines/engine.h"

namespace qv::devhost {

/// Where the add-in shall look for its cloud service.
struct ServiceAddress {
  std::string scheme;
  std::string host;
  std::uint16_t port;
};

/// Nothing listens there: a development host never reaches the built-in service by accident.
inline const ServiceAddress kNoService{"http", "127.0.0.1", 9};

enum class EngineKind { kMemory, kCalc };
enum class BrowserKind { kRecorder, kChromium };

struct Options {
  /// Empty: QuorvantisExcel.dll beside the program.
  std::wstring addin;
  /// Empty: the engine's own empty workbook.
  std::wstring workbook;
  EngineKind engine = EngineKind::kMemory;
  HostStyle host = HostStyle::kExcel;
  ServiceAddress service = kNoService;
  /// PEM file of the certificate authority behind an https service; empty to trust none but the system's.
  std::wstring authority;
  /// Shows the document windows; otherwise they exist hidden.
  bool window = false;
  /// Opens no pane at the start.
  bool noPane = false;
  /// What stands behind the web views; without a choice Chromium where windows are shown, otherwise nothing
  /// but a recorder.
  std::optional<BrowserKind> browser;
  /// Port of the running office server; 0 when not given.
  std::uint16_t calcPort = 0;
};

/// The options, or nothing and one line in `error` that says what is wrong. `arguments` are without the
/// program's name.
[[nodiscard]] std::optional<Options> ParseCommandLine(const std::vector<std::wstring>& arguments,
                                                      std::string& error);

/// "http://host:port" or "https://host:port", the port optional, a single "/" at the end allowed.
[[nodiscard]] std::optional<ServiceAddress> ParseServiceAddress(const std::string& url);

}  // namespace qv::devhost
