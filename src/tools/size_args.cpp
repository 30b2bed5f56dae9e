#include "tools/size_args.h"

#include <algorithm>
#include <string>
#include <utility>

#include "foundation/json_parts.h"
#include "tools/range_args.h"
#include "tools/tool_result.h"

namespace qv {
namespace {

/// The words of one axis.
struct AxisWords {
  SizeAxis axis;
  std::wstring_view list;
  std::wstring_view single;
  std::wstring_view size;
};

constexpr std::wstring_view kTooManyEntriesText = L"columns 或 rows 条目过多（>5000），请减少";

constexpr AxisWords kColumnWords{SizeAxis::kColumns, L"columns", L"col", L"width"};
constexpr AxisWords kRowWords{SizeAxis::kRows, L"rows", L"row", L"height"};

/// Where the range is given, when the axis has no word of its own for it.
constexpr std::wstring_view kRangeNames[] = {L"range", L"row1", L"col1", L"row2", L"col2"};

/// Neighbouring columns or rows, or nothing.
using Span = std::optional<std::pair<std::int32_t, std::int32_t>>;

Span SpanOfRange(const RangeArgs& range, SizeAxis axis) {
  if (axis == SizeAxis::kColumns) {
    return range.IsWholeRows() ? std::nullopt : Span({range.col1, range.col2});
  }
  return range.IsWholeColumns() ? std::nullopt : Span({range.row1, range.row2});
}

/// What a number or a text names: 3, "C", "B:D", "2:4", "B2:D4", and a column's number as text.
Span SpanOfValue(std::wstring_view value, SizeAxis axis) {
  if (const std::int32_t number = IntegerOfValue(value); number >= 1) return Span({number, number});
  const std::optional<std::wstring> text = TextOfValue(value);
  if (!text) return std::nullopt;
  const std::optional<RangeArgs> range = ParseA1(*text);
  if (const Span span = range ? SpanOfRange(*range, axis) : std::nullopt) return span;
  const std::int32_t number = IntegerOfValue(*text);
  return number >= 1 && text->find_first_not_of(L"0123456789") == std::wstring::npos ? Span({number, number})
                                                                                     : std::nullopt;
}

bool IsFitted(std::wstring_view autofit, const AxisWords& words) {
  if (const std::optional<bool> flag = FlagOfValue(autofit)) return *flag;
  if (TextOfValue(autofit) == words.list) return true;
  const auto names = JsonElementsOf(autofit);
  for (const std::wstring_view name : names.value_or(std::vector<std::wstring_view>())) {
    if (TextOfValue(name) == words.list) return true;
  }
  return false;
}

/// Reads what the arguments say of one axis.
class AxisReader {
 public:
  AxisReader(const ToolArguments& arguments, const AxisWords& words, SizeArgs& result)
      : arguments_(arguments),
        words_(words),
        result_(result),
        size_(NumberOfValue(arguments.Value(words.size))),
        fits_(IsFitted(arguments.Value(L"autofit"), words)) {}

  void Read() {
    const std::wstring_view list = arguments_.Value(words_.list);
    const std::wstring_view single = arguments_.Value(words_.single);
    named_ = !list.empty() || !single.empty() || HasRange();
    if (const auto entries = JsonElementsOf(list)) {
      AddEntries(*entries);
    } else if (!list.empty()) {
      AddEntry(list);
    } else if (!single.empty()) {
      AddEntry(single);
    } else if (named_) {
      AddRange();
    }
  }

  [[nodiscard]] bool IsNamed() const { return named_; }
  [[nodiscard]] bool FitsUnnamed() const { return fits_ && !named_; }

 private:
  [[nodiscard]] bool HasRange() const {
    return std::ranges::any_of(kRangeNames,
                               [&](std::wstring_view name) { return !arguments_.Value(name).empty(); });
  }

  void AddEntries(const std::vector<std::wstring_view>& entries) {
    if (entries.size() > kMaxSizeEntries) {
      result_.error = kTooManyEntriesText;
      return;
    }
    for (const std::wstring_view entry : entries)
      AddEntry(entry);
  }

  /// A range of whole columns has no rows to size, and the other way round.
  void AddRange() {
    const std::optional<RangeArgs> range = ParseRangeArgs(arguments_);
    if (!range) {
      result_.error = kBadRangeText;
    } else if (const Span span = SpanOfRange(*range, words_.axis)) {
      Add(span, size_);
    }
  }

  void AddEntry(std::wstring_view entry) {
    const std::optional<JsonMembers> members = JsonMembersOf(entry);
    if (!members) return Add(SpanOfValue(entry, words_.axis), size_);
    std::wstring_view place = JsonValueOf(*members, words_.single);
    if (place.empty()) place = JsonValueOf(*members, L"range");
    const std::optional<double> own = NumberOfValue(JsonValueOf(*members, words_.size));
    Add(SpanOfValue(place, words_.axis), own ? own : size_);
  }

  void Add(const Span& span, std::optional<double> size) {
    if (!span) {
      result_.error = kBadRangeText;
      return;
    }
    if (size || fits_) result_.changes.push_back({words_.axis, span->first, span->second, size});
  }

  const ToolArguments& arguments_;
  const AxisWords& words_;
  SizeArgs& result_;
  std::optional<double> size_;
  bool fits_;
  bool named_ = false;
};

}  // namespace

SizeArgs ParseSizeArgs(const ToolArguments& arguments) {
  SizeArgs result;
  AxisReader columns(arguments, kColumnWords, result);
  AxisReader rows(arguments, kRowWords, result);
  columns.Read();
  rows.Read();
  if (!result.error.empty()) {
    result.changes.clear();
    return result;
  }
  // A flag is about what is named; a list names the axes itself.
  const bool isFlag = FlagOfValue(arguments.Value(L"autofit")).has_value();
  const bool fitsUsed = !isFlag || (!columns.IsNamed() && !rows.IsNamed());
  result.fitsUsedColumns = fitsUsed && columns.FitsUnnamed();
  result.fitsUsedRows = fitsUsed && rows.FitsUnnamed();
  return result;
}

}  // namespace qv
