#include "tools/fill_survey.h"

#include <algorithm>

namespace qv {
namespace {

class Survey {
 public:
  Survey(const AskFill& ask, int questions) : ask_(ask), questions_(questions) {}

  void Look(std::span<const RowSpan> runs, std::int32_t firstCol, std::int32_t cols) {
    if (runs.empty() || questions_-- <= 0) return;
    const RowSpan rows{runs.front().first, runs.back().last};
    const FillAnswer answer = ask_(BlockOf(rows, firstCol, cols));
    switch (answer.state) {
      case FillState::kUniform:
        for (const RowSpan& run : runs)
          GroupOf(answer.fill).push_back(BlockOf(run, firstCol, cols));
        break;
      case FillState::kMixed:
        LookAtHalves(runs, firstCol, cols);
        break;
      case FillState::kFixed:
        break;
      case FillState::kUnknown:
        questions_ = 0;
        break;
    }
  }

  [[nodiscard]] std::vector<FillGroup> Take() { return std::move(groups_); }

 private:
  static RangeGeometry BlockOf(const RowSpan& rows, std::int32_t firstCol, std::int32_t cols) {
    return {rows.Count(), cols, rows.first, firstCol};
  }

  void LookAtHalves(std::span<const RowSpan> runs, std::int32_t firstCol, std::int32_t cols) {
    if (runs.size() > 1) {
      const std::size_t half = runs.size() / 2;
      Look(runs.first(half), firstCol, cols);
      Look(runs.subspan(half), firstCol, cols);
    } else if (const RowSpan run = runs.front(); run.Count() > 1) {
      const std::int32_t middle = run.first + run.Count() / 2;
      const RowSpan halves[] = {{run.first, middle - 1}, {middle, run.last}};
      Look(std::span(halves).first(1), firstCol, cols);
      Look(std::span(halves).last(1), firstCol, cols);
    } else if (cols > 1) {
      Look(runs, firstCol, cols / 2);
      Look(runs, firstCol + cols / 2, cols - cols / 2);
    }
  }

  std::vector<RangeGeometry>& GroupOf(const CellFill& fill) {
    auto found = std::ranges::find(groups_, fill, &FillGroup::fill);
    if (found == groups_.end()) found = groups_.insert(found, FillGroup{fill, {}});
    return found->blocks;
  }

  const AskFill& ask_;
  int questions_;
  std::vector<FillGroup> groups_;
};

}  // namespace

std::vector<FillGroup> SurveyFills(std::span<const RowSpan> runs, std::int32_t firstCol, std::int32_t cols,
                                   const AskFill& ask, int questions) {
  Survey survey(ask, questions);
  survey.Look(runs, firstCol, cols);
  return survey.Take();
}

}  // namespace qv
