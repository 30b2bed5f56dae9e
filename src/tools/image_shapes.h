#pragma once

#include <oaidl.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "foundation/variant.h"
#include "tools/image_anchor.h"
#include "workbook/automation.h"

namespace qv {

// The pictures among the shapes of a sheet. Host UI thread.

enum class ShapeKind {
  /// A picture of its own, linked or not, also a vector graphic.
  kPicture,
  /// A shape that is filled with a picture.
  kPictureFill,
  kChart,
  kGroup,
  /// Lines, plain shapes, controls, embedded objects: nothing that is a picture.
  kOther,
};

/// `answer` receives a busy host's refusal, and the kind says nothing then; otherwise it stays as it is.
[[nodiscard]] ShapeKind KindOfShape(IDispatch* shape, HostAnswer& answer);

/// Whether a shape of this kind can be exported as a picture.
[[nodiscard]] bool IsPictureKind(ShapeKind kind);

/// One picture on a sheet.
struct SheetPicture {
  ComPtr<IDispatch> shape;
  ShapeKind kind = ShapeKind::kOther;
  ImageAnchor anchor;

  [[nodiscard]] bool IsInGroup() const { return !anchor.childPath.empty(); }
};

/// Everything that floats on a sheet.
struct SheetPictures {
  /// In the order of the host's collection, groups from the inside.
  std::vector<SheetPicture> pictures;
  /// Shapes that are no pictures; a group counts by what is in it.
  std::size_t unsupported = 0;
  bool hasCollection = false;
  /// A busy answer ends the walk; other failures leave out the shape.
  HostAnswer answer;
};

[[nodiscard]] SheetPictures FindPictures(IDispatch* sheet, const std::wstring& sheetName);

/// Name, place and size of a shape as they are now; sheet, index and path as in `place`. Nothing when a
/// number cannot be read; `answer` as of `KindOfShape`.
[[nodiscard]] std::optional<ImageAnchor> ReadAnchor(IDispatch* shape, const ImageAnchor& place,
                                                    HostAnswer& answer);
/// The same; `place` itself when the shape cannot be read.
[[nodiscard]] ImageAnchor AnchorOfShape(IDispatch* shape, const ImageAnchor& place);

/// What an anchor leads to.
struct ResolvedAnchor {
  /// Nothing when the anchor is stale.
  std::optional<SheetPicture> picture;
  /// The first candidate's anchor, for the log; empty names when there was none.
  ImageAnchor candidate;
  HostAnswer answer;
};

/// The picture on the sheet that the anchor means: looked for by its name, then at its place, then
/// everywhere, because its place in the stack may have changed.
[[nodiscard]] ResolvedAnchor ResolveAnchor(IDispatch* sheet, const ImageAnchor& anchor);

}  // namespace qv
