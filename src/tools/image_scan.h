#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/image_job.h"
#include "tools/image_results.h"
#include "tools/image_shapes.h"

namespace qv {

/// Makes the thumbnails of the pictures of a sheet.
class ImageScan final : public ImageJob {
 public:
  ImageScan(ComPtr<IDispatch> application, std::wstring sheetName, SheetPictures found)
      : application_(std::move(application)), sheetName_(std::move(sheetName)), found_(std::move(found)) {}

  [[nodiscard]] bool RunSlice() override;
  [[nodiscard]] std::wstring Result() const override {
    return ScanResult(sheetName_, found_.pictures.size(), found_.unsupported, anchors_);
  }

 private:
  /// Whether this slice works on pictures; without the clipboard only after having waited for it.
  [[nodiscard]] bool MayGoOn(bool hasClipboard);

  ComPtr<IDispatch> application_;
  std::wstring sheetName_;
  SheetPictures found_;
  /// Of the pictures so far.
  std::vector<std::wstring> anchors_;
  /// Tick count of the first slice of those in a row that did not get the clipboard.
  std::optional<std::uint64_t> blockedSince_;
};

}  // namespace qv
