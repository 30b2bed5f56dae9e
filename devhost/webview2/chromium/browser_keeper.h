#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "foundation/unique_handle.h"
#include "webview2/chromium/browser_options.h"

namespace qv::devhost {

/// Where a browser listens on 127.0.0.1.
struct DevToolsAddress {
  std::uint16_t port;
  std::wstring path;
};

/// A scratch profile and the script beside this library that runs one browser at a time on it. Under Wine a
/// Unix process cannot be waited for nor ended by handle, so a FIFO stands between: what is written to it are
/// commands, and once this process has gone, in whatever way, the script ends the browser and removes the
/// profile.
class BrowserKeeper {
 public:
  enum class Progress { kStarting, kListening, kEnded };

  /// The one for these options, kept until this process ends: a browser that is
  /// started again finds its profile as it was.
  [[nodiscard]] static std::shared_ptr<BrowserKeeper> ForOptions(const BrowserOptions& options);

  explicit BrowserKeeper(BrowserOptions options) : options_(std::move(options)) {}

  /// Orders a browser, ending the one before, and numbers it. Blocks until the script runs, which takes
  /// milliseconds. 0 when it does not run.
  [[nodiscard]] unsigned Start();
  /// What has become of the browser with this number; `address` is filled when it listens.
  [[nodiscard]] Progress Look(unsigned number, DevToolsAddress& address) const;
  /// Orders the end of the browser with this number. Does not wait.
  void Stop(unsigned number);

 private:
  [[nodiscard]] bool HasMark(const wchar_t* name, unsigned number) const;
  [[nodiscard]] bool TakeLeash();
  [[nodiscard]] bool MakeRoot();
  [[nodiscard]] bool RunScript() const;
  [[nodiscard]] bool Command(const std::string& line);

  BrowserOptions options_;
  mutable std::mutex mutex_;
  /// Unix path of the folder that holds the profile, the FIFO and the log.
  std::wstring root_;
  UniqueFile leash_;
  unsigned starts_ = 0;
};

}  // namespace qv::devhost
