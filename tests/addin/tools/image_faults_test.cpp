#include <filesystem>
#include <string>

#include "addin/foundation/fake_object.h"
#include "addin/tools/image_fixture.h"
#include "addin/tools/import_fault.h"
#include "engines/common/clipboard_picture.h"
#include "foundation/json_reader.h"
#include "foundation/text.h"
#include "tools/clipboard_backup.h"
#include "tools/copied_picture.h"
#include "tools/image_encoding.h"
#include "tools/png_picture.h"

namespace qv::test {
namespace {

/// Failures as the libraries of the system tell of them.
INT_PTR WINAPI GeneralError() {
  return 1;
}
INT_PTR WINAPI NoAnswer() {
  return 0;
}
INT_PTR WINAPI NoMemory() {
  return E_OUTOFMEMORY;
}

/// Whatever goes wrong, the fixture sees to it that the clipboard and the temporary folder are as they were.
class ImageFaultsTest : public ImageTest {
 protected:
  void SetUp() override {
    ImageTest::SetUp();
    AddPicture(L"Photo", 40, 20, 1);
    anchor = AnchorOf(L"Photo");
  }

  /// The sheet holds what it held in the beginning.
  void ExpectUntouched() {
    EXPECT_EQ(engine.Sheet(L"Sheet1").shapes.size(), 1U);
    EXPECT_TRUE(engine.Sheet(L"Sheet1").charts.empty());
    EXPECT_EQ(Shown(L"Photo"), *Pattern(40, 20, 1));
  }

  std::wstring anchor;
};

TEST_F(ImageFaultsTest, AnExtractThatFailsLeavesNothingBehind) {
  for (const devhost::HostError& error :
       {devhost::HostError{}, devhost::HostError{DISP_E_EXCEPTION, devhost::kHostBusy}}) {
    engine.Faults().Fail({.member = "Shape.CopyPicture", .error = error});
    EXPECT_EQ(Extract(anchor), Error(L"export_failed"));
    engine.Faults().Clear();
  }
  // The host puts nothing on the clipboard that is a picture.
  engine.Faults().OnCall(
      "Shape.CopyPicture",
      [] {
        const ClipboardOwner owner;
        const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
        EmptyClipboard();
      },
      false);
  EXPECT_EQ(Extract(anchor), Error(L"export_failed"));
  ExpectUntouched();
}

TEST_F(ImageFaultsTest, ABitmapThatTheHostDidNotCopyIsNotTaken) {
  const UniqueBitmap stale(CreateBitmap(3, 2, 1, 32, nullptr));
  ASSERT_TRUE(devhost::PutPictureOnClipboard(stale.Get(), true));
  const auto shape = MakeCom<FakeObject>();
  bool copies = false;
  shape->Add(L"CopyPicture", [&](FakeObject::Call&) {
    return !copies || devhost::PutPictureOnClipboard(stale.Get(), true) ? S_OK : E_FAIL;
  });
  EXPECT_EQ(CopyPictureOf(engine.Application(), shape.Get()).error, L"no bitmap in clipboard");
  copies = true;
  EXPECT_EQ(CopyPictureOf(engine.Application(), shape.Get()).error, L"");
  PutText();
}

TEST_F(ImageFaultsTest, AnEmptyFileIsNoExport) {
  engine.Faults().Fail({.member = "Shape.CopyPicture"});
  engine.Faults().OnCall(
      "Chart.Export",
      [] {
        for (const std::wstring& path : TemporaryFiles())
          std::filesystem::resize_file(path, 0);
      },
      false);
  EXPECT_TRUE(
      Replace(anchor, *Pattern(40, 20, 1)).starts_with(LR"({"ok":true,"replaced":true,"hasUndo":false)"));
  engine.Faults().Clear();
  ExpectUntouched();
}

TEST_F(ImageFaultsTest, WhatCannotBeCopiedIsExportedThroughAChartForItsUndo) {
  engine.Faults().Fail({.member = "Shape.CopyPicture"});
  const std::wstring result = Replace(anchor, *Pattern(5, 5, 9));
  EXPECT_TRUE(result.starts_with(LR"({"ok":true,"replaced":true,"hasUndo":true)")) << ToUtf8(result);
  EXPECT_EQ(engine.Calls("Chart.Export"), 1U);
  EXPECT_TRUE(engine.Sheet(L"Sheet1").charts.empty());
  engine.Faults().Clear();
  EXPECT_EQ(Undo(anchor).find(L"error"), std::wstring::npos);
  EXPECT_EQ(Shown(L"Photo"), *Pattern(40, 20, 1));
}

TEST_F(ImageFaultsTest, EveryStepOfTheChartsWayMayFail) {
  for (const char* member : {"Worksheet.ChartObjects", "ChartObjects.Add", "ChartObject.Chart", "Shape.Copy",
                             "Chart.Paste", "Chart.Export"}) {
    engine.Faults().Fail({.member = "Shape.CopyPicture"});
    engine.Faults().Fail({.member = member});
    const TraceTail trace;
    const std::wstring result = Replace(anchor, *Pattern(40, 20, 1));
    EXPECT_TRUE(result.starts_with(LR"({"ok":true,"replaced":true,"hasUndo":false)")) << member;
    EXPECT_TRUE(trace.Has(L"ExcelImageTranslate undo export fallback failed: shape_export\r\n")) << member;
    EXPECT_TRUE(trace.Has(L"ExcelImageTranslate undo snapshot empty after replace capture\r\n")) << member;
    engine.Faults().Clear();
    ExpectUntouched();
    EXPECT_EQ(Undo(anchor), Error(L"nothing_to_undo")) << member;
  }
}

TEST_F(ImageFaultsTest, EveryStepOfAReplacementMayFail) {
  const struct {
    const char* member;
    const wchar_t* line;
  } cases[] = {{"Shapes.AddPicture", L"ExcelImageTranslate AddPicture failed hr=0x80020009\r\n"},
               {"Shape.Delete", L"ExcelImageTranslate old shape not deleted shape=Photo\r\n"}};
  for (const auto& [member, line] : cases) {
    engine.Faults().Fail({.member = member, .times = 1});
    const TraceTail trace;
    EXPECT_EQ(Replace(anchor, *Pattern(5, 5, 9)), Error(L"replace_failed"));
    EXPECT_TRUE(trace.Has(line)) << member;
    engine.Faults().Clear();
    ExpectUntouched();
    EXPECT_EQ(Undo(anchor), Error(L"nothing_to_undo"));
  }
}

TEST_F(ImageFaultsTest, WhatANewPictureCannotTakeOverDoesNotHinderIt) {
  for (const char* member : {"Shape.AlternativeText", "Shape.Placement", "Shape.LockAspectRatio",
                             "Shape.ZOrderPosition", "Shape.ZOrder"}) {
    engine.Faults().Fail({.member = member});
    const std::wstring result = Replace(anchor, *Pattern(40, 20, 1));
    EXPECT_TRUE(result.starts_with(LR"({"ok":true,"replaced":true,"hasUndo":true)")) << member;
    engine.Faults().Clear();
    ExpectUntouched();
  }
}

TEST_F(ImageFaultsTest, EveryStepOfAnEncodingMayFail) {
  ShapeOf(L"Photo")->picture = Pattern(400, 200, 1);
  ShapeOf(L"Photo")->width = 300;
  ShapeOf(L"Photo")->height = 150;
  anchor = AnchorOf(L"Photo");
  const struct {
    const char* library;
    const char* function;
    FARPROC failing;
    const wchar_t* code;
  } cases[] = {{"gdiplus.dll", "GdiplusStartup", GeneralError, L"gdiplus_startup"},
               {"gdiplus.dll", "GdipGetImageEncodersSize", GeneralError, L"png_encoder_missing"},
               {"gdiplus.dll", "GdipGetImageEncoders", GeneralError, L"png_encoder_missing"},
               {"ole32.dll", "CreateStreamOnHGlobal", NoMemory, L"stream_create"},
               {"gdiplus.dll", "GdipSaveImageToStream", GeneralError, L"bitmap_save"},
               {"crypt32.dll", "CryptBinaryToStringW", NoAnswer, L"base64_encode"},
               {"gdiplus.dll", "GdipDrawImageRectRectI", GeneralError, L"scale_failed"}};
  for (const auto& [library, function, failing, code] : cases) {
    const ImportFault fault(library, function, failing);
    const TraceTail trace;
    EXPECT_EQ(Scan().find(L"thumbBase64"), std::wstring::npos) << function;
    EXPECT_TRUE(trace.Has(Concat(L"ExcelImageTranslate probe export failed: ", code, L"\r\n"))) << function;
    // Only a thumbnail is scaled.
    if (std::wstring_view(code) == L"scale_failed") continue;
    EXPECT_EQ(Extract(anchor), Error(L"encode_failed")) << function;
    EXPECT_TRUE(trace.Has(Concat(L"ExcelImageTranslate extract encode failed: ", code, L"\r\n"))) << function;
  }
  EXPECT_TRUE(Extract(anchor).starts_with(LR"({"ok":true)"));
  EXPECT_EQ(Shown(L"Photo"), *Pattern(400, 200, 1));
}

TEST_F(ImageFaultsTest, WhatCannotBeDecodedTouchesNothing) {
  for (const char* function : {"GdiplusStartup", "GdipCreateBitmapFromStream", "GdipBitmapLockBits"}) {
    const ImportFault fault("gdiplus.dll", function, GeneralError);
    EXPECT_EQ(Replace(anchor, *Pattern(5, 5, 9)), Error(L"decode_failed")) << function;
    ExpectUntouched();
  }
}

TEST_F(ImageFaultsTest, AnAddedShapeThatCannotBeDeletedIsSaid) {
  engine.Faults().Fail({.member = "Shape.Delete"});
  const TraceTail trace;
  EXPECT_EQ(Replace(anchor, *Pattern(5, 5, 9)), Error(L"replace_failed"));
  EXPECT_TRUE(trace.Has(L"ExcelImageTranslate added shape not deleted\r\n"));
  engine.Faults().Clear();
  EXPECT_EQ(Undo(anchor), Error(L"nothing_to_undo"));
}

TEST_F(ImageFaultsTest, ANewPictureThatKeepsItsOwnNameIsAnsweredByIt) {
  engine.Faults().Fail({.member = "Shape.Name", .on = devhost::kOnPut});
  const std::wstring result = Replace(anchor, *Pattern(5, 5, 9));
  const std::wstring now(JsonReader(result).Object(L"anchor"));
  EXPECT_NE(now, anchor);
  engine.Faults().Clear();
  EXPECT_EQ(Undo(now).find(L"error"), std::wstring::npos);
}

TEST_F(ImageFaultsTest, AHolderOfTheClipboardKeepsItAndThePictureStays) {
  // Another program's thread would hold it the same way: it is open for a window of its own.
  const ClipboardOwner other;
  {
    const OpenedClipboard held(other.Get(), kClipboardPatience);
    ASSERT_TRUE(static_cast<bool>(held));
    EXPECT_EQ(Extract(anchor), Error(L"export_failed"));
    EXPECT_EQ(engine.Calls("Shape.CopyPicture"), 1U);
  }
  ExpectUntouched();
}

TEST_F(ImageFaultsTest, APictureOfTooManyPixelsIsNotDecoded) {
  // A header of 100 000 times 100 000 pixels and nothing behind it that would fill them.
  std::string file = devhost::memory::EncodePicture(*Pattern(1, 1));
  const std::string side("\0\x01\x86\xA0", 4);
  file.replace(16, 8, side + side);
  const std::wstring text = Base64Of(std::as_bytes(std::span(file)));
  EXPECT_EQ(
      Ask(L"imageTranslateReplace", Concat(L",\"anchor\":", anchor, L",\"imageBase64\":\"", text, L'"')),
      Error(L"decode_failed"));
  // Few enough pixels, but a file that does not hold them.
  EXPECT_FALSE(CanBeDrawn(std::as_bytes(std::span(file))));
  ExpectUntouched();
}

TEST_F(ImageFaultsTest, APictureOfSixtyMegabytesIsReadToItsEnd) {
  const std::wstring large(std::size_t{60} << 20, L'A');
  EXPECT_EQ(
      Ask(L"imageTranslateReplace", Concat(L",\"anchor\":", anchor, L",\"imageBase64\":\"", large, L'"')),
      Error(L"decode_failed"));
}

TEST(ImageEncoding, WhatIsNoBitmapHasItsCode) {
  EXPECT_EQ(EncodeImage(nullptr).error, L"null_bitmap");
  EXPECT_EQ(EncodeThumbnail(nullptr).error, L"null_bitmap");
}

}  // namespace
}  // namespace qv::test
