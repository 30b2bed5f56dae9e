#include "tools/image_export.h"

#include <array>
#include <optional>
#include <string>

#include "foundation/file_io.h"
#include "foundation/guard.h"
#include "foundation/logging.h"
#include "foundation/temporary_file.h"
#include "tools/copied_picture.h"
#include "workbook/chart_collection.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

EncodedImage Failed(std::wstring_view code) {
  EncodedImage image;
  image.error = code;
  return image;
}

/// Lets a saved workbook count as saved again at the end: what comes and goes in between changes nothing.
class SavedMark {
 public:
  explicit SavedMark(IDispatch* sheet)
      : workbook_(GetDispProperty(sheet, L"Parent")),
        wasSaved_(GetFlagProperty(workbook_.Get(), kSaved).value_or(false)) {}
  SavedMark(const SavedMark&) = delete;
  SavedMark& operator=(const SavedMark&) = delete;
  ~SavedMark() {
    if (!wasSaved_) return;
    Guard(L"SavedMark", [this] {
      const Variant saved(true);
      static_cast<void>(PutDispProperty(workbook_.Get(), kSaved, &saved));
    });
  }

 private:
  static constexpr const wchar_t* kSaved = L"Saved";

  ComPtr<IDispatch> workbook_;
  bool wasSaved_;
};

/// A chart on a sheet that is deleted with this object.
class TemporaryChart {
 public:
  TemporaryChart(IDispatch* sheet, const ImageAnchor& place) {
    const std::array call{Variant(place.left), Variant(place.top), Variant(place.width),
                          Variant(place.height)};
    const ComPtr<IDispatch> charts = ChartObjectsOf(sheet);
    const std::int32_t before = GetIntProperty(charts.Get(), L"Count");
    Variant frame;
    if (FAILED(InvokeByName(charts.Get(), L"Add", call, &frame))) return;
    frame_ = frame.Object();
    // A host that does not say which one it has made has put it behind the others.
    const std::int32_t count = GetIntProperty(charts.Get(), L"Count");
    if (frame_ == nullptr && count > before) frame_ = GetCollectionItem(charts.Get(), Variant(count));
  }
  TemporaryChart(const TemporaryChart&) = delete;
  TemporaryChart& operator=(const TemporaryChart&) = delete;
  ~TemporaryChart() {
    if (frame_ == nullptr || SUCCEEDED(InvokeByName(frame_.Get(), L"Delete", {}, nullptr))) return;
    PaneLog(L"ExcelImageTranslate temporary chart not deleted\r\n");
  }

  /// Null when the host made none.
  [[nodiscard]] ComPtr<IDispatch> Chart() const { return GetDispProperty(frame_.Get(), L"Chart"); }

 private:
  ComPtr<IDispatch> frame_;
};

EncodedImage ReadExported(const std::wstring& path) {
  std::string file;
  if (ReadWholeFile(path, file, kMaxImageBytes) != FileRead::kRead) return Failed(kByShapeExport);
  const auto bytes = std::as_bytes(std::span(file));
  const std::optional<PixelSize> size = PngSize(bytes);
  if (!size) return Failed(kByShapeExport);
  return {{bytes.begin(), bytes.end()}, *size, {}};
}

EncodedImage ExportChart(IDispatch* chart) {
  const TemporaryFile file(L"qvimage", L".png");
  if (chart == nullptr || file.Path().empty()) return Failed(kByShapeExport);
  const std::array call{Variant(file.Path()), Variant(L"PNG")};
  Variant done;
  if (FAILED(InvokeByName(chart, L"Export", call, &done)) || !done.IsTrue()) return Failed(kByShapeExport);
  return ReadExported(file.Path());
}

void Put(IDispatch* object, const wchar_t* property, const Variant& value) {
  static_cast<void>(PutDispProperty(object, property, &value));
}

/// Nothing of the chart itself is to be seen, and the picture fills it, as far as the host lets that be done.
void FitIntoChart(IDispatch* shape, IDispatch* chart, const ImageAnchor& place) {
  const ComPtr<IDispatch> area = GetDispProperty(chart, L"ChartArea");
  const ComPtr<IDispatch> format = GetDispProperty(area.Get(), L"Format");
  for (const wchar_t* const part : {L"Line", L"Fill"})
    Put(GetDispProperty(format.Get(), part).Get(), L"Visible", Variant(0));
  Put(shape, L"LockAspectRatio", Variant(0));
  Put(shape, L"Left", Variant(0.0));
  Put(shape, L"Top", Variant(0.0));
  Put(shape, L"Width", Variant(GetNumberProperty(area.Get(), L"Width").value_or(place.width)));
  Put(shape, L"Height", Variant(GetNumberProperty(area.Get(), L"Height").value_or(place.height)));
}

/// False when the host has pasted nothing, where it can tell what is in a chart.
bool PasteInto(IDispatch* chart, const ImageAnchor& place) {
  if (FAILED(InvokeByName(chart, L"Paste", {}, nullptr))) return false;
  const ComPtr<IDispatch> shapes = GetDispProperty(chart, L"Shapes");
  if (shapes == nullptr) return true;
  const std::int32_t count = GetIntProperty(shapes.Get(), L"Count");
  if (count < 1) return false;
  FitIntoChart(GetCollectionItem(shapes.Get(), Variant(count)).Get(), chart, place);
  return true;
}

EncodedImage ExportPasted(IDispatch* sheet, const SheetPicture& picture) {
  const ClipboardBackup backup;
  if (!backup.IsTaken()) return Failed(kByShapeExport);
  const SavedMark saved(sheet);
  const TemporaryChart temporary(sheet, picture.anchor);
  const ComPtr<IDispatch> chart = temporary.Chart();
  const bool pasted = chart != nullptr &&
                      SUCCEEDED(InvokeByName(picture.shape.Get(), L"Copy", {}, nullptr)) &&
                      PasteInto(chart.Get(), picture.anchor);
  return pasted ? ExportChart(chart.Get()) : Failed(kByShapeExport);
}

}  // namespace

EncodedImage ExportPicture(IDispatch* application, IDispatch* shape) {
  const CopiedPicture copied = CopyPictureOf(application, shape);
  return copied.error.empty() ? EncodeImage(copied.bitmap.Get()) : Failed(kByCopyPicture);
}

ExportedThumbnail ExportThumbnail(IDispatch* application, IDispatch* shape, const ClipboardBackup& backup) {
  const CopiedPicture copied = CopyPictureOf(application, shape, backup);
  if (!copied.error.empty()) return {{}, Failed(kByCopyPicture)};
  return {SizeOfBitmap(copied.bitmap.Get()), EncodeThumbnail(copied.bitmap.Get())};
}

EncodedImage ExportPictureThroughChart(IDispatch* application, IDispatch* sheet,
                                       const SheetPicture& picture) {
  const DisplayAlertsGuard alertsOff(application);
  if (picture.kind != ShapeKind::kChart) return ExportPasted(sheet, picture);
  return ExportChart(GetDispProperty(picture.shape.Get(), L"Chart").Get());
}

}  // namespace qv
