#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// Identifies one picture on a sheet by where and what it is. The host has nothing better: its own numbers of
/// shapes differ from host to host, and a picture that is replaced is another shape.
struct ImageAnchor {
  std::wstring sheetName;
  /// The picture's own name, also inside a group.
  std::wstring shapeName;
  /// 1-based position in the sheet's "Shapes" of the picture, or of the group that it lies in. Only a hint:
  /// it changes whenever another shape comes, goes or changes its place in the stack.
  std::int32_t shapeIndex = 0;
  /// 1-based positions down the "GroupItems"; empty for a picture outside of groups.
  std::vector<std::int32_t> childPath;
  // Points.
  double width = 0;
  double height = 0;
  double left = 0;
  double top = 0;
};

/// How far apart two positions or sizes may be and still count as the same, in points. Less than the
/// smallest step by which somebody can move a picture (a pixel is 0.19 points on a screen of 400 %), more
/// than a host's rounding: Excel answers in single precision, others keep hundredths of millimetres.
inline constexpr double kAnchorTolerance = 0.1;

/// Groups inside groups are followed this far down.
inline constexpr std::size_t kMaxChildPath = 16;

/// The anchor as a JSON object; `more` are further members behind its own, each with a comma in front.
[[nodiscard]] std::wstring AnchorJson(const ImageAnchor& anchor, std::wstring_view more = {});

/// Reads an anchor back; members that are not its own are ignored. Nothing for what is no anchor of a shape
/// of this host, and for one without a sheet, with a position below 1 or too deep a path.
[[nodiscard]] std::optional<ImageAnchor> ParseAnchor(std::wstring_view json);

/// Whether both mean the same picture: names and path are equal, place and size nearly so.
[[nodiscard]] bool IsSamePicture(const ImageAnchor& left, const ImageAnchor& right);

}  // namespace qv
