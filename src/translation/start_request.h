#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "translation/terminology.h"

namespace qv {

/// The muted slate blue of translations, as the host's blue-green-red number.
inline constexpr std::int32_t kDefaultTargetColor = 9203290;

/// How translations are styled in the bilingual layout; an absent member leaves the font as it is.
struct TargetFont {
  std::optional<std::wstring> name;
  /// Points.
  std::optional<double> size;
  std::optional<bool> bold;
  /// The host's blue-green-red number.
  std::int32_t color = kDefaultTargetColor;

  bool operator==(const TargetFont&) const = default;
};

/// The page's wish to start a run.
struct StartRequest {
  std::wstring sourceLang;
  std::wstring targetLang;
  std::wstring clientTraceId;
  /// Translate the selection instead of the whole sheet.
  bool selection = false;
  bool restart = false;
  bool allSheets = false;
  /// Source and translation together instead of the translation alone.
  bool bilingual = false;
  /// The page performs the requests to the service.
  bool viaPanel = false;
  bool hasViaPanelField = false;
  TerminologyChoice terminology;
  TargetFont font;

  /// "selection" or "full".
  [[nodiscard]] std::wstring_view Mode() const { return selection ? L"selection" : L"full"; }
};

/// Reads a "start", "startSelection" or "restart" message. A font member counts only when its key is present.
[[nodiscard]] StartRequest ParseStartRequest(std::wstring_view action, std::wstring_view message);

/// The target font members of any message.
[[nodiscard]] TargetFont ParseTargetFont(std::wstring_view message);

/// The log line of a start message.
[[nodiscard]] std::wstring StartLogLine(std::wstring_view action, std::wstring_view message);

}  // namespace qv
