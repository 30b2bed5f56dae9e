#include "engines/common/clipboard_image.h"

#include <windows.h>

#include <cstring>

namespace qv::devhost {
namespace {

class ReadClipboard {
 public:
  ReadClipboard() : open_(OpenClipboard(nullptr) != FALSE) {}
  ReadClipboard(const ReadClipboard&) = delete;
  ReadClipboard& operator=(const ReadClipboard&) = delete;
  ~ReadClipboard() {
    if (open_) CloseClipboard();
  }
  [[nodiscard]] bool IsOpen() const { return open_; }

 private:
  bool open_;
};

/// Bytes before the pixels: the header, its masks and its colour table.
DWORD PixelOffset(const BITMAPINFOHEADER& header) {
  DWORD colours = header.biClrUsed;
  if (colours == 0 && header.biBitCount <= 8) colours = 1u << header.biBitCount;
  const bool masksFollow = header.biCompression == BI_BITFIELDS && header.biSize == sizeof(BITMAPINFOHEADER);
  const DWORD masks = masksFollow ? 3 * sizeof(DWORD) : 0;
  return header.biSize + masks + colours * static_cast<DWORD>(sizeof(RGBQUAD));
}

std::string BitmapFile(HANDLE memory) {
  const auto* const bytes = static_cast<const char*>(GlobalLock(memory));
  if (bytes == nullptr) return {};
  const auto size = static_cast<DWORD>(GlobalSize(memory));
  std::string file;
  if (size >= sizeof(BITMAPINFOHEADER)) {
    BITMAPINFOHEADER header;
    std::memcpy(&header, bytes, sizeof(header));
    BITMAPFILEHEADER start{};
    start.bfType = 0x4D42;  // "BM"
    start.bfSize = static_cast<DWORD>(sizeof(start)) + size;
    start.bfOffBits = static_cast<DWORD>(sizeof(start)) + PixelOffset(header);
    file.assign(reinterpret_cast<const char*>(&start), sizeof(start)).append(bytes, size);
  }
  GlobalUnlock(memory);
  return file;
}

std::string MetafileFile(HENHMETAFILE metafile) {
  std::string file(GetEnhMetaFileBits(metafile, 0, nullptr), '\0');
  GetEnhMetaFileBits(metafile, static_cast<UINT>(file.size()), reinterpret_cast<BYTE*>(file.data()));
  return file;
}

}  // namespace

std::string ImageFileFromClipboard() {
  const ReadClipboard clipboard;
  if (!clipboard.IsOpen()) return {};
  if (const HANDLE bitmap = GetClipboardData(CF_DIB)) return BitmapFile(bitmap);
  if (const HANDLE metafile = GetClipboardData(CF_ENHMETAFILE))
    return MetafileFile(static_cast<HENHMETAFILE>(metafile));
  return {};
}

}  // namespace qv::devhost
