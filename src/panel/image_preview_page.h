#pragma once

#include <string>
#include <string_view>

namespace qv {

/// What the page asks to be shown large.
struct ImagePreview {
  /// The picture's bytes in base64, with or without a "data:" prefix.
  std::wstring imageBase64;
  std::wstring mediaType;
  std::wstring title;
  /// Name offered when the user saves the picture.
  std::wstring downloadName;
};

/// Reads "openImagePreview"; the download name is "image.png" unless given.
[[nodiscard]] ImagePreview ReadImagePreview(std::wstring_view message);

/// A self-contained page in UTF-8 that shows the picture and lets the user save it; empty when there is no
/// picture in it. Runs no code but its own, loads nothing.
[[nodiscard]] std::string BuildImagePreviewPage(const ImagePreview& preview);

}  // namespace qv
