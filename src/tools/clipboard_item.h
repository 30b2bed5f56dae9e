#pragma once

#include <windows.h>

#include <optional>

namespace qv {

/// A copy of what the clipboard holds in one format.
class ClipboardItem {
 public:
  /// Formats that mean something to their owner only: private ones, handles of the owner's own objects, and
  /// what the owner draws itself.
  [[nodiscard]] static bool IsOwnersOwn(UINT format);

  /// Copies what `GetClipboardData` gave for the format; nothing when that does not work. The clipboard is
  /// open.
  [[nodiscard]] static std::optional<ClipboardItem> Copy(UINT format, HANDLE source);

  ClipboardItem(const ClipboardItem&) = delete;
  ClipboardItem& operator=(const ClipboardItem&) = delete;
  ClipboardItem(ClipboardItem&& other) noexcept;
  ClipboardItem& operator=(ClipboardItem&& other) noexcept;
  ~ClipboardItem();

  /// Hands the copy over to the open clipboard; false when the clipboard refuses it.
  [[nodiscard]] bool Put();

 private:
  ClipboardItem(UINT format, HANDLE data) : format_(format), data_(data) {}

  UINT format_;
  HANDLE data_;
};

}  // namespace qv
