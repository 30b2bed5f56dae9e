#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "tools/blank_rows.h"
#include "workbook/range_geometry.h"

namespace qv {

/// A fill that can be put back exactly.
struct CellFill {
  enum class Kind { kNone, kColor, kTheme };

  Kind kind = Kind::kNone;
  /// The host's number of a colour, or of a theme's colour.
  std::int32_t color = 0;
  /// How much lighter (to 1) or darker (to -1) than the theme's colour.
  double tint = 0;

  friend bool operator==(const CellFill&, const CellFill&) = default;
};

/// What the host tells of the fills of a block.
enum class FillState {
  /// All its cells have one fill, which can be put back.
  kUniform,
  /// Its cells differ.
  kMixed,
  /// All its cells have a fill that could not be put back as it is: a pattern, a gradient, one of a merge.
  kFixed,
  /// The host does not tell.
  kUnknown,
};

struct FillAnswer {
  FillState state = FillState::kUnknown;
  CellFill fill;
};

using AskFill = std::function<FillAnswer(const RangeGeometry& block)>;

/// Cells with the same fill.
struct FillGroup {
  CellFill fill;
  std::vector<RangeGeometry> blocks;
};

/// How often a survey asks the host; cells that are not clear by then are in no group.
inline constexpr int kMaxFillQuestions = 2000;

/// The fills of the columns from `firstCol` on in ascending runs of rows, by fill. Asks about large blocks,
/// the rows between the runs included, and halves what is mixed, down to single cells; stops where the host
/// does not tell. Cells whose fill could not be put back are in no group.
[[nodiscard]] std::vector<FillGroup> SurveyFills(std::span<const RowSpan> runs, std::int32_t firstCol,
                                                 std::int32_t cols, const AskFill& ask,
                                                 int questions = kMaxFillQuestions);

}  // namespace qv
