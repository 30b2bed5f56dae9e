#pragma once

#include <windows.h>

#include <optional>

namespace qv {

/// A copy of what the clipboard holds in one format.
class ClipboardItem {
 public:
  /// Copies what the open clipboard holds; an owner that promised it is asked for it. Nothing where it cannot
  /// be copied, or would mean nothing to anybody else: private formats, handles of the owner's own objects,
  /// and formats that the owner draws itself.
  [[nodiscard]] static std::optional<ClipboardItem> Copy(UINT format);

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
