#include "workbook/hidden_lines.h"

#include <cstddef>
#include <cstdint>

#include "workbook/cell_block.h"
#include "workbook/halved_range.h"

namespace qv {
namespace {

class HiddenReader {
 public:
  explicit HiddenReader(IDispatch* sheet) : sheet_(sheet) {}

  /// `line` has one cell of each line.
  void Read(const RangeGeometry& line, const wchar_t* wholeLines, std::vector<bool>& hidden) {
    hidden.assign(static_cast<std::size_t>(line.Cells()), false);
    ReadPart(line, wholeLines, hidden, 0);
  }
  [[nodiscard]] HostAnswer Answer() const { return answer_.IsBusy() ? answer_ : HostAnswer{}; }

 private:
  void ReadPart(const RangeGeometry& part, const wchar_t* wholeLines, std::vector<bool>& hidden,
                std::size_t first) {
    if (answer_.IsBusy()) return;
    const ComPtr<IDispatch> cells = GetBlockRange(sheet_, part, &answer_);
    const ComPtr<IDispatch> lines =
        cells != nullptr ? GetDispProperty(cells.Get(), wholeLines, &answer_) : nullptr;
    Variant value;
    if (lines != nullptr) answer_.hr = GetProperty(lines.Get(), L"Hidden", value, &answer_.exceptionCode);
    if (!answer_.Ok()) return;
    const auto count = static_cast<std::size_t>(part.Cells());
    if (value.IsTrue()) {
      for (std::size_t i = 0; i < count; ++i)
        hidden[first + i] = true;
    } else if (value.Type() != VT_BOOL && count > 1) {
      const HalvedRange halves = Halve(part);
      ReadPart(halves.first, wholeLines, hidden, first);
      ReadPart(halves.second, wholeLines, hidden, first + static_cast<std::size_t>(halves.first.Cells()));
    }
  }

  IDispatch* sheet_;
  HostAnswer answer_;
};

}  // namespace

HostAnswer ReadHiddenLines(IDispatch* sheet, const RangeGeometry& block, HiddenLines& lines) {
  HiddenReader reader(sheet);
  reader.Read({block.rows, 1, block.firstRow, block.firstCol}, L"EntireRow", lines.rows);
  reader.Read({1, block.cols, block.firstRow, block.firstCol}, L"EntireColumn", lines.cols);
  return reader.Answer();
}

}  // namespace qv
