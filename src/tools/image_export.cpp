#include "tools/image_export.h"

#include <array>
#include <optional>
#include <string>

#include "foundation/file_io.h"
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

/// A chart on a sheet that is deleted with this object.
class TemporaryChart {
 public:
  TemporaryChart(IDispatch* sheet, const ImageAnchor& place) {
    const std::array call{Variant(place.left), Variant(place.top), Variant(place.width),
                          Variant(place.height)};
    Variant frame;
    if (SUCCEEDED(InvokeByName(ChartObjectsOf(sheet).Get(), L"Add", call, &frame))) frame_ = frame.Object();
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
  if (FAILED(InvokeByName(chart, L"Export", call, nullptr))) return Failed(kByShapeExport);
  return ReadExported(file.Path());
}

EncodedImage ExportPasted(IDispatch* sheet, const SheetPicture& picture) {
  const ClipboardBackup backup;
  if (!backup.IsTaken()) return Failed(kByShapeExport);
  const TemporaryChart temporary(sheet, picture.anchor);
  const ComPtr<IDispatch> chart = temporary.Chart();
  const bool pasted = chart != nullptr &&
                      SUCCEEDED(InvokeByName(picture.shape.Get(), L"Copy", {}, nullptr)) &&
                      SUCCEEDED(InvokeByName(chart.Get(), L"Paste", {}, nullptr));
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
