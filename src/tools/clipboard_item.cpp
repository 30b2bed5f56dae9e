#include "tools/clipboard_item.h"

#include <cstring>
#include <utility>
#include <vector>

#include "foundation/opened_clipboard.h"

namespace qv {
namespace {

HANDLE CopyMemoryBlock(HANDLE source) {
  const SIZE_T size = GlobalSize(source);
  // No bytes at all cannot be told from discarded memory; one byte can.
  if (size == 0) return GlobalAlloc(GHND, 1);
  const void* const from = GlobalLock(source);
  if (from == nullptr) return nullptr;
  UniqueGlobal copy(GlobalAlloc(GMEM_MOVEABLE, size));
  if (void* const to = copy ? GlobalLock(copy.Get()) : nullptr) {
    std::memcpy(to, from, size);
    GlobalUnlock(copy.Get());
  } else {
    copy.Reset();
  }
  GlobalUnlock(source);
  return copy.Detach();
}

HANDLE CopyBitmap(HANDLE source) {
  return CopyImage(source, IMAGE_BITMAP, 0, 0, 0);
}

HANDLE CopyPalette(HANDLE source) {
  const auto palette = static_cast<HPALETTE>(source);
  const UINT count = GetPaletteEntries(palette, 0, 0, nullptr);
  if (count == 0 || count > 0xFFFF) return nullptr;
  std::vector<BYTE> memory(sizeof(LOGPALETTE) + count * sizeof(PALETTEENTRY));
  auto* const description = reinterpret_cast<LOGPALETTE*>(memory.data());
  description->palVersion = 0x300;
  description->palNumEntries = static_cast<WORD>(count);
  GetPaletteEntries(palette, 0, count, description->palPalEntry);
  return CreatePalette(description);
}

HANDLE CopyEnhancedMetafile(HANDLE source) {
  return CopyEnhMetaFileW(static_cast<HENHMETAFILE>(source), nullptr);
}

void FreeMetafilePicture(HANDLE data) {
  if (auto* const picture = static_cast<METAFILEPICT*>(GlobalLock(data))) {
    if (picture->hMF != nullptr) DeleteMetaFile(picture->hMF);
    GlobalUnlock(data);
  }
  GlobalFree(data);
}

/// The memory holds a handle, whose metafile is copied too.
HANDLE CopyMetafilePicture(HANDLE source) {
  if (GlobalSize(source) < sizeof(METAFILEPICT)) return nullptr;
  UniqueGlobal copy(CopyMemoryBlock(source));
  auto* const picture = copy ? static_cast<METAFILEPICT*>(GlobalLock(copy.Get())) : nullptr;
  if (picture == nullptr) return nullptr;
  picture->hMF = CopyMetaFileW(picture->hMF, nullptr);
  const bool copied = picture->hMF != nullptr;
  GlobalUnlock(copy.Get());
  return copied ? copy.Detach() : nullptr;
}

void FreeMemoryBlock(HANDLE data) {
  GlobalFree(data);
}
void FreeGdiObject(HANDLE data) {
  DeleteObject(data);
}
void FreeEnhancedMetafile(HANDLE data) {
  DeleteEnhMetaFile(static_cast<HENHMETAFILE>(data));
}

/// How the data of a format is copied and freed.
struct Kind {
  UINT format;
  HANDLE (*copy)(HANDLE);
  void (*free)(HANDLE);
};

constexpr Kind kHandleKinds[] = {
    {CF_BITMAP, &CopyBitmap, &FreeGdiObject},
    {CF_PALETTE, &CopyPalette, &FreeGdiObject},
    {CF_ENHMETAFILE, &CopyEnhancedMetafile, &FreeEnhancedMetafile},
    {CF_METAFILEPICT, &CopyMetafilePicture, &FreeMetafilePicture},
};
/// All other formats are memory.
constexpr Kind kMemoryKind{0, &CopyMemoryBlock, &FreeMemoryBlock};

const Kind& KindOf(UINT format) {
  for (const Kind& kind : kHandleKinds) {
    if (kind.format == format) return kind;
  }
  return kMemoryKind;
}

}  // namespace

bool ClipboardItem::IsOwnersOwn(UINT format) {
  const bool isDrawn = format >= CF_OWNERDISPLAY && format <= CF_DSPENHMETAFILE;
  const bool isPrivate = format >= CF_PRIVATEFIRST && format <= CF_PRIVATELAST;
  return isDrawn || isPrivate || (format >= CF_GDIOBJFIRST && format <= CF_GDIOBJLAST);
}

std::optional<ClipboardItem> ClipboardItem::Copy(UINT format, HANDLE source) {
  const HANDLE copy = KindOf(format).copy(source);
  if (copy == nullptr) return std::nullopt;
  return ClipboardItem(format, copy);
}

ClipboardItem::ClipboardItem(ClipboardItem&& other) noexcept
    : format_(other.format_), data_(std::exchange(other.data_, nullptr)) {}

ClipboardItem& ClipboardItem::operator=(ClipboardItem&& other) noexcept {
  std::swap(format_, other.format_);
  std::swap(data_, other.data_);
  return *this;
}

ClipboardItem::~ClipboardItem() {
  if (data_ != nullptr) KindOf(format_).free(data_);
}

bool ClipboardItem::Put() {
  if (data_ == nullptr || SetClipboardData(format_, data_) == nullptr) return false;
  data_ = nullptr;
  return true;
}

}  // namespace qv
