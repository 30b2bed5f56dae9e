#include "engines/common/clipboard_picture.h"

namespace qv::devhost {
namespace {

/// What is put on the clipboard while this lives goes there in the name of a window.
class PictureClipboard {
 public:
  PictureClipboard()
      : owner_(CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)),
        open_(owner_ != nullptr && OpenClipboard(owner_) && EmptyClipboard()) {}
  PictureClipboard(const PictureClipboard&) = delete;
  PictureClipboard& operator=(const PictureClipboard&) = delete;
  ~PictureClipboard() {
    if (open_) CloseClipboard();
    if (owner_ != nullptr) DestroyWindow(owner_);
  }
  [[nodiscard]] bool IsOpen() const { return open_; }

 private:
  HWND owner_;
  bool open_;
};

HENHMETAFILE MetafileOf(HBITMAP bitmap) {
  BITMAP facts{};
  const HDC canvas = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  if (canvas == nullptr || GetObjectW(bitmap, sizeof(facts), &facts) == 0) return nullptr;
  const HDC source = CreateCompatibleDC(nullptr);
  const HGDIOBJ before = SelectObject(source, bitmap);
  BitBlt(canvas, 0, 0, facts.bmWidth, facts.bmHeight, source, 0, 0, SRCCOPY);
  SelectObject(source, before);
  DeleteDC(source);
  return CloseEnhMetaFile(canvas);
}

}  // namespace

bool PutPictureOnClipboard(HBITMAP bitmap, bool asBitmap) {
  const PictureClipboard clipboard;
  if (!clipboard.IsOpen()) return false;
  if (!asBitmap) {
    const HENHMETAFILE metafile = MetafileOf(bitmap);
    if (metafile != nullptr && SetClipboardData(CF_ENHMETAFILE, metafile) != nullptr) return true;
    DeleteEnhMetaFile(metafile);
    return false;
  }
  const HANDLE copy = CopyImage(bitmap, IMAGE_BITMAP, 0, 0, 0);
  if (copy != nullptr && SetClipboardData(CF_BITMAP, copy) != nullptr) return true;
  DeleteObject(copy);
  return false;
}

HBITMAP TakePictureFromClipboard() {
  if (!OpenClipboard(nullptr)) return nullptr;
  const HANDLE shared = GetClipboardData(CF_BITMAP);
  const HANDLE copy = shared == nullptr ? nullptr : CopyImage(shared, IMAGE_BITMAP, 0, 0, 0);
  CloseClipboard();
  return static_cast<HBITMAP>(copy);
}

}  // namespace qv::devhost
