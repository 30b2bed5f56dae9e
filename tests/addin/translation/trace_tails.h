#pragma once

#include <cstring>
#include <string>

#include "../foundation/scratch_folder.h"
#include "foundation/logging.h"

namespace qv {

/// What the two trace logs got since this was made.
class TraceTails {
 public:
  TraceTails()
      : paneStart_(ReadBytes(GetPaneTraceLogPath()).size()), eventStart_(ReadBytes(EventPath()).size()) {}

  [[nodiscard]] std::wstring PaneLines() const {
    const std::string bytes = ReadBytes(GetPaneTraceLogPath()).substr(paneStart_);
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text;
  }
  [[nodiscard]] std::string Events() const { return ReadBytes(EventPath()).substr(eventStart_); }

 private:
  static std::wstring EventPath() { return GetLogDirectory() + L"\\Quorvantis_translate_trace.log"; }

  std::size_t paneStart_;
  std::size_t eventStart_;
};

}  // namespace qv
