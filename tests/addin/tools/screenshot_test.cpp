#include <windows.h>
// Wants the header above first.
#include <wincrypt.h>

#include <cstring>
#include <future>
#include <map>
#include <string>
#include <vector>

#include "addin/tools/tools_fixture.h"
#include "foundation/json_text.h"
#include "foundation/opened_clipboard.h"
#include "foundation/text.h"
#include "foundation/unique_gdi.h"
#include "tools/clipboard_backup.h"
#include "tools/png_picture.h"

namespace qv::test {
namespace {

constexpr const wchar_t* kTool = L"excelScreenshotRange";
/// Milliseconds that a test waits for a worker.
constexpr ULONGLONG kDeadline = 10'000;
constexpr const wchar_t* kRange = LR"({"range":"A1:C4"})";

UINT OwnFormat() {
  static const UINT format = RegisterClipboardFormatW(L"Quorvantis test format");
  return format;
}

HGLOBAL MemoryOf(const void* data, size_t size) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  std::memcpy(GlobalLock(memory), data, size);
  GlobalUnlock(memory);
  return memory;
}

/// A 2 by 1 bitmap, one pixel of the colour and a black one.
HBITMAP SmallBitmap(COLORREF color) {
  const HDC screen = GetDC(nullptr);
  const HDC canvas = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, 2, 1);
  const HGDIOBJ before = SelectObject(canvas, bitmap);
  SetPixel(canvas, 0, 0, color);
  SetPixel(canvas, 1, 0, 0);
  SelectObject(canvas, before);
  DeleteDC(canvas);
  ReleaseDC(nullptr, screen);
  return bitmap;
}

COLORREF FirstPixel(HBITMAP bitmap) {
  const HDC canvas = CreateCompatibleDC(nullptr);
  const HGDIOBJ before = SelectObject(canvas, bitmap);
  const COLORREF color = GetPixel(canvas, 0, 0);
  SelectObject(canvas, before);
  DeleteDC(canvas);
  return color;
}

HENHMETAFILE SmallMetafile() {
  const HDC canvas = CreateEnhMetaFileW(nullptr, nullptr, nullptr, L"Quorvantis\0test\0");
  Rectangle(canvas, 1, 2, 30, 40);
  return CloseEnhMetaFile(canvas);
}

HGLOBAL SmallMetafilePicture() {
  const HDC canvas = CreateMetaFileW(nullptr);
  Rectangle(canvas, 1, 2, 30, 40);
  const METAFILEPICT picture{MM_ANISOTROPIC, 1000, 2000, CloseMetaFile(canvas)};
  return MemoryOf(&picture, sizeof(picture));
}

HPALETTE SmallPalette() {
  struct {
    LOGPALETTE head{0x300, 1, {{1, 2, 3, 0}}};
  } description;
  return CreatePalette(&description.head);
}

/// What the open clipboard holds in one format, as far as it can be compared.
std::string Describe(UINT format) {
  const HANDLE data = GetClipboardData(format);
  if (data == nullptr) return "nothing";
  if (format == CF_BITMAP) return std::to_string(FirstPixel(static_cast<HBITMAP>(data)));
  if (format == CF_PALETTE) {
    PALETTEENTRY entry{};
    GetPaletteEntries(static_cast<HPALETTE>(data), 0, 1, &entry);
    return std::to_string(entry.peRed) + ' ' + std::to_string(entry.peBlue);
  }
  if (format == CF_ENHMETAFILE) {
    std::string bits(GetEnhMetaFileBits(static_cast<HENHMETAFILE>(data), 0, nullptr), '\0');
    GetEnhMetaFileBits(static_cast<HENHMETAFILE>(data), static_cast<UINT>(bits.size()),
                       reinterpret_cast<BYTE*>(bits.data()));
    return bits;
  }
  const auto* bytes = static_cast<const char*>(GlobalLock(data));
  std::string text;
  if (format == CF_METAFILEPICT) {
    const auto* const picture = reinterpret_cast<const METAFILEPICT*>(bytes);
    text = std::to_string(picture->xExt) + ' ' + std::to_string(GetMetaFileBitsEx(picture->hMF, 0, nullptr));
  } else {
    text.assign(bytes, GlobalSize(data));
  }
  GlobalUnlock(data);
  return text;
}

class Screenshot : public ToolsTest {
 protected:
  void SetUp() override {
    ToolsTest::SetUp();
    SetText("A1", L"Hello");
    SetText("B3", L"World");
  }

  /// Fills the clipboard with one thing of every kind that can be copied.
  void FillClipboard() {
    const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
    ASSERT_TRUE(static_cast<bool>(clipboard));
    EmptyClipboard();
    SetClipboardData(CF_UNICODETEXT, MemoryOf(L"kept \u4e2d", 7 * sizeof(wchar_t)));
    SetClipboardData(OwnFormat(), MemoryOf("own\0bytes", 10));
    SetClipboardData(CF_BITMAP, SmallBitmap(RGB(10, 20, 30)));
    SetClipboardData(CF_ENHMETAFILE, SmallMetafile());
    SetClipboardData(CF_METAFILEPICT, SmallMetafilePicture());
    SetClipboardData(CF_PALETTE, SmallPalette());
  }
  [[nodiscard]] std::map<UINT, std::string> ReadClipboard() {
    const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
    std::map<UINT, std::string> content;
    for (const UINT format : {UINT{CF_UNICODETEXT}, OwnFormat(), UINT{CF_BITMAP}, UINT{CF_ENHMETAFILE},
                              UINT{CF_METAFILEPICT}, UINT{CF_PALETTE}})
      content[format] = Describe(format);
    return content;
  }
  /// Waits until the clipboard holds this.
  void ExpectClipboard(const std::map<UINT, std::string>& content) {
    const ULONGLONG start = GetTickCount64();
    while (ReadClipboard() != content && GetTickCount64() - start < kDeadline)
      PumpMessages();
    EXPECT_EQ(ReadClipboard(), content);
  }
  /// Runs `action` as soon as the host has put its picture on the clipboard.
  void AfterCopyPicture(std::function<void()> action) {
    engine.Faults().OnCall("Range.CopyPicture", std::move(action), false);
  }

  ClipboardOwner owner;
};

TEST_F(Screenshot, ThePictureIsAPngOfTheRange) {
  const TraceTail trace;
  const std::wstring result = Run(kTool, kRange);
  EXPECT_TRUE(trace.Has(L"ExcelScreenshotRange: rangeStr=A1:C4 len=5\r\n"));
  // Three columns of 64 pixels and four rows of 20.
  EXPECT_TRUE(result.starts_with(
      LR"({"ok":true,"mediaType":"image/png","width":192,"height":80,"data":"iVBORw0KGgo)"))
      << ToUtf8(result.substr(0, 120));
  const std::wstring data = JsonGetString(result, L"data");
  EXPECT_EQ(data.find_first_of(L"\r\n "), std::wstring::npos);
  DWORD size = 0;
  EXPECT_TRUE(CryptStringToBinaryW(data.c_str(), 0, CRYPT_STRING_BASE64, nullptr, &size, nullptr, nullptr));
  std::vector<BYTE> png(size);
  EXPECT_TRUE(
      CryptStringToBinaryW(data.c_str(), 0, CRYPT_STRING_BASE64, png.data(), &size, nullptr, nullptr));
  const std::string bytes(png.begin(), png.end());
  EXPECT_EQ(bytes.substr(bytes.size() - 8, 4), "IEND");
  EXPECT_NE(Run(kTool, LR"({"range":"F1:H4"})"), result);
}

TEST_F(Screenshot, TheClipboardHoldsWhatItHeldBefore) {
  FillClipboard();
  const auto before = ReadClipboard();
  for (const auto& [format, content] : before)
    EXPECT_NE(content, "nothing") << format;
  EXPECT_TRUE(Run(kTool, kRange).starts_with(L"{\"ok\":true"));
  EXPECT_EQ(ReadClipboard(), before);
}

TEST_F(Screenshot, AnEmptyClipboardIsEmptyAgain) {
  {
    const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
    EmptyClipboard();
  }
  EXPECT_TRUE(Run(kTool, kRange).starts_with(L"{\"ok\":true"));
  EXPECT_EQ(CountClipboardFormats(), 0);
}

TEST_F(Screenshot, EveryFailureOnTheWayPutsTheClipboardBack) {
  FillClipboard();
  const auto before = ReadClipboard();

  engine.Faults().Fail({.member = "Range.CopyPicture"});
  EXPECT_EQ(Run(kTool, kRange), Error(L"CopyPicture failed"));
  EXPECT_EQ(ReadClipboard(), before);
  engine.Faults().Clear();

  AfterCopyPicture([this] {
    const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
    EmptyClipboard();
    SetClipboardData(OwnFormat(), MemoryOf("x", 1));
  });
  EXPECT_EQ(Run(kTool, kRange), Error(L"no bitmap in clipboard"));
  EXPECT_EQ(ReadClipboard(), before);
  engine.Faults().Clear();

  engine.Faults().Hide("Range.CopyPicture");
  EXPECT_EQ(Run(kTool, kRange), Error(L"CopyPicture failed"));
  EXPECT_EQ(ReadClipboard(), before);
}

/// Holds the clipboard on a thread of its own.
class ClipboardHolder {
 public:
  ClipboardHolder() {
    std::promise<void> opened;
    std::future<void> isOpen = opened.get_future();
    thread_ = std::async(std::launch::async, [this, signal = std::move(opened)]() mutable {
      const ClipboardOwner window;
      const OpenedClipboard clipboard(window.Get(), kClipboardPatience);
      signal.set_value();
      const Content content = released_.get_future().get();
      if (content.data == nullptr) return;
      EmptyClipboard();
      SetClipboardData(content.format, content.data);
    });
    isOpen.wait();
  }
  ~ClipboardHolder() { Release(); }
  void Release() { Replace(0, nullptr); }
  /// Puts something on the clipboard first.
  void Replace(UINT format, HGLOBAL data) {
    if (!thread_.valid()) return;
    released_.set_value({format, data});
    thread_.get();
  }

 private:
  struct Content {
    UINT format;
    HGLOBAL data;
  };
  std::promise<Content> released_;
  std::future<void> thread_;
};

TEST_F(Screenshot, AClipboardThatAnotherProgramHoldsIsLeftAlone) {
  FillClipboard();
  const auto before = ReadClipboard();
  {
    const ClipboardHolder holder;
    EXPECT_EQ(Run(kTool, kRange), Error(L"OpenClipboard failed"));
    EXPECT_EQ(engine.Calls("Range.CopyPicture"), 0U);
  }
  EXPECT_EQ(ReadClipboard(), before);
}

TEST_F(Screenshot, AHolderThatComesInBetweenFailsTheCallOnly) {
  FillClipboard();
  const auto before = ReadClipboard();
  std::optional<ClipboardHolder> holder;
  AfterCopyPicture([&] { holder.emplace(); });
  EXPECT_EQ(Run(kTool, kRange), Error(L"OpenClipboard failed"));
  engine.Faults().Clear();
  // The next picture does not take the last one's for the user's.
  const auto calls = engine.Calls("Range.CopyPicture");
  EXPECT_EQ(Run(kTool, kRange), Error(L"OpenClipboard failed"));
  EXPECT_EQ(engine.Calls("Range.CopyPicture"), calls);
  holder->Release();
  ExpectClipboard(before);
}

TEST_F(Screenshot, WhatIsCopiedWhileTheClipboardIsHeldStays) {
  FillClipboard();
  std::optional<ClipboardHolder> holder;
  AfterCopyPicture([&] { holder.emplace(); });
  EXPECT_EQ(Run(kTool, kRange), Error(L"OpenClipboard failed"));
  engine.Faults().Clear();
  const TraceTail trace;
  holder->Replace(OwnFormat(), MemoryOf("new", 3));
  const ULONGLONG start = GetTickCount64();
  while (!trace.Has(L"ClipboardBackup: clipboard not restored") && GetTickCount64() - start < kDeadline)
    PumpMessages();
  EXPECT_EQ(ReadClipboard().at(OwnFormat()), "new");
}

TEST(ClipboardItem, WhatCannotBeCopiedIsNone) {
  const HGLOBAL tooSmall = MemoryOf("x", 1);
  EXPECT_FALSE(ClipboardItem::Copy(CF_METAFILEPICT, tooSmall).has_value());
  EXPECT_FALSE(ClipboardItem::Copy(CF_ENHMETAFILE, nullptr).has_value());
  GlobalFree(tooSmall);
  // Some formats only say something by being there.
  const HGLOBAL marker = GlobalAlloc(GMEM_MOVEABLE, 0);
  EXPECT_TRUE(ClipboardItem::Copy(OwnFormat(), marker).has_value());
  GlobalFree(marker);
}

TEST_F(Screenshot, WhatItsOwnerDoesNotDeliverIsNoHindrance) {
  {
    const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
    EmptyClipboard();
    SetClipboardData(OwnFormat(), MemoryOf("kept", 4));
    // A promise that this window does not keep.
    SetClipboardData(CF_UNICODETEXT, nullptr);
  }
  EXPECT_TRUE(Run(kTool, kRange).starts_with(L"{\"ok\":true"));
  EXPECT_EQ(ReadClipboard().at(OwnFormat()), "kept");
}

TEST_F(Screenshot, BadArgumentsHaveTheirOwnTexts) {
  const TraceTail trace;
  EXPECT_EQ(Run(kTool), Error(L"range required"));
  EXPECT_EQ(Run(kTool, LR"({"range":"$A$1"})"), Error(L"invalid range"));
  EXPECT_TRUE(trace.Has(L"ExcelScreenshotRange: rangeStr=$A$1 len=4\r\n"));
  EXPECT_EQ(Run(kTool, LR"({"range":"A1048577"})"), Error(L"invalid range"));
  EXPECT_EQ(Run(kTool, LR"({"range":"A1","sheetName":"None"})"), Error(L"找不到工作表"));
  // More than any picture can hold.
  EXPECT_EQ(Run(kTool, LR"({"range":"A:XFD"})"), Error(L"CopyPicture failed"));
  engine.Faults().Fail({.member = "Window.ActiveSheet"});
  EXPECT_EQ(Run(kTool, kRange), Error(L"未连接到工作表"));
}

TEST_F(Screenshot, WhatMeansSomethingToItsOwnerOnlyIsNotCopied) {
  const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
  EmptyClipboard();
  for (const UINT format : {UINT{CF_PRIVATEFIRST}, UINT{CF_PRIVATELAST}, UINT{CF_GDIOBJFIRST},
                            UINT{CF_OWNERDISPLAY}, UINT{CF_DSPTEXT}}) {
    SetClipboardData(format, MemoryOf("x", 1));
    EXPECT_TRUE(ClipboardItem::IsOwnersOwn(format)) << format;
  }
  EmptyClipboard();
}

TEST(PngPicture, WhatIsNoBitmapIsRefused) {
  EXPECT_EQ(EncodePng(nullptr).error, L"Bitmap.Save failed");
}

TEST(PngPicture, Base64HasItsPaddingAndNoLineBreaks) {
  const std::vector<std::byte> bytes(100, std::byte{'a'});
  EXPECT_EQ(Base64Of(std::span(bytes).first(1)), L"YQ==");
  EXPECT_EQ(Base64Of(bytes).size(), 136U);
  EXPECT_EQ(Base64Of({}), L"");
}

}  // namespace
}  // namespace qv::test
