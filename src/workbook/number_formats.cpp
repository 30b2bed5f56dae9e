#include "workbook/number_formats.h"

#include <cstddef>
#include <cstdint>

#include "foundation/variant.h"
#include "workbook/automation.h"
#include "workbook/cell_block.h"

namespace qv {
namespace {

class FormatReader {
 public:
  FormatReader(IDispatch* sheet, const RangeGeometry& block, const std::vector<bool>& watched)
      : sheet_(sheet), block_(block), watched_(watched), formats_(watched.size()) {}

  [[nodiscard]] std::vector<std::wstring> Read() {
    ReadPart(block_);
    return std::move(formats_);
  }

 private:
  void ReadPart(const RangeGeometry& part) {
    bool anyWatched = false;
    ForEachWatched(part, [&](std::size_t) { anyWatched = true; });
    if (!anyWatched) return;
    Variant format;
    const ComPtr<IDispatch> cells = GetBlockRange(sheet_, part);
    if (cells == nullptr || FAILED(GetProperty(cells.Get(), L"NumberFormat", format))) return;
    if (format.IsText()) {
      ForEachWatched(part, [&](std::size_t index) { formats_[index] = format.Text(); });
    } else if (part.Cells() > 1) {
      Divide(part);
    }
  }

  /// Tables mostly have one format a column.
  void Divide(const RangeGeometry& part) {
    RangeGeometry first = part;
    RangeGeometry second = part;
    if (part.cols > 1) {
      first.cols = part.cols / 2;
      second.cols -= first.cols;
      second.firstCol += first.cols;
    } else {
      first.rows = part.rows / 2;
      second.rows -= first.rows;
      second.firstRow += first.rows;
    }
    ReadPart(first);
    ReadPart(second);
  }

  template <class Visit>
  void ForEachWatched(const RangeGeometry& part, Visit visit) const {
    for (std::int32_t row = 0; row < part.rows; ++row) {
      for (std::int32_t col = 0; col < part.cols; ++col) {
        const auto index =
            static_cast<std::size_t>(part.firstRow - block_.firstRow + row) * std::size_t(block_.cols) +
            static_cast<std::size_t>(part.firstCol - block_.firstCol + col);
        if (watched_[index]) visit(index);
      }
    }
  }

  IDispatch* sheet_;
  const RangeGeometry& block_;
  const std::vector<bool>& watched_;
  std::vector<std::wstring> formats_;
};

}  // namespace

std::vector<std::wstring> ReadNumberFormats(IDispatch* sheet, const RangeGeometry& block,
                                            const std::vector<bool>& watched) {
  return FormatReader(sheet, block, watched).Read();
}

}  // namespace qv
