#pragma once

#include <oaidl.h>

#include <cstdint>
#include <optional>
#include <utility>

#include "foundation/variant.h"
#include "workbook/automation.h"
#include "workbook/range_geometry.h"

namespace qv {

/// A member of the host's Range: its name, and its fixed dispatch id in the typed Range interface.
struct RangeMember {
  const wchar_t* name;
  DISPID id;
};

// Dispatch ids as in Excel's type library.
inline constexpr RangeMember kRangeValue2{L"Value2", 1388};
inline constexpr RangeMember kRangeHasFormula{L"HasFormula", 267};
inline constexpr RangeMember kRangeMergeCells{L"MergeCells", 208};
inline constexpr RangeMember kRangeMergeArea{L"MergeArea", 1385};
inline constexpr RangeMember kRangeRow{L"Row", 257};
inline constexpr RangeMember kRangeColumn{L"Column", 240};
inline constexpr RangeMember kRangeRows{L"Rows", 258};
inline constexpr RangeMember kRangeColumns{L"Columns", 241};
inline constexpr RangeMember kRangeCount{L"Count", 118};
inline constexpr RangeMember kRangeItem{L"Item", 170};

/// Reads properties of a range by name or, where the object answers for the typed Range interface, by fixed
/// id. That interface is IDispatch without methods of its own: nothing beyond `Invoke` may be called on it.
/// Host UI thread.
class RangeReader {
 public:
  /// Null is allowed; every read fails then.
  [[nodiscard]] static RangeReader LateBound(ComPtr<IDispatch> range) { return {std::move(range), false}; }
  /// Nothing when the object refuses the typed interface.
  [[nodiscard]] static std::optional<RangeReader> Typed(IDispatch* range);
  /// A reader of the same kind for an object that a read gave; by name when that object is not typed.
  [[nodiscard]] RangeReader For(IDispatch* range) const;

  [[nodiscard]] HRESULT Get(const RangeMember& member, Variant& value, SCODE* exceptionCode = nullptr) const;
  /// An object property as a reader; one of null when there is none.
  [[nodiscard]] RangeReader Child(const RangeMember& member) const;
  /// As `GetIntProperty`.
  [[nodiscard]] std::int32_t Int(const RangeMember& member) const;
  /// The cell at a 1-based position inside the range; see `GetItem`.
  [[nodiscard]] HRESULT Item(std::int32_t row, std::int32_t col, Variant& cell,
                             SCODE* exceptionCode = nullptr) const;

  [[nodiscard]] bool IsNull() const { return range_ == nullptr; }

 private:
  RangeReader(ComPtr<IDispatch> range, bool typed) : range_(std::move(range)), typed_(typed) {}

  ComPtr<IDispatch> range_;
  bool typed_;
};

/// Nothing when any of the four values is below 1 or cannot be read.
[[nodiscard]] std::optional<RangeGeometry> ReadGeometry(const RangeReader& range);

/// Whether a cell (1-based sheet position) lies in a merged block without being its top-left cell; false when
/// that cannot be read. `answer` (may be null) receives the failure that kept it from being read.
[[nodiscard]] bool IsCoveredByMerge(const RangeReader& cell, std::int32_t row, std::int32_t col,
                                    HostAnswer* answer = nullptr);

}  // namespace qv
