#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qv::devhost::memory {

/// The pixels of a picture, row by row from the top, blue in the lowest byte and opacity in the highest.
struct PictureData {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;

  friend bool operator==(const PictureData&, const PictureData&) = default;
};

/// What charts and shapes that float on a sheet have in common. Positions in points.
struct FloatingObject {
  FloatingObject() = default;
  FloatingObject(const FloatingObject&) = delete;
  FloatingObject& operator=(const FloatingObject&) = delete;
  virtual ~FloatingObject() = default;

  std::wstring name;
  double left = 0;
  double top = 0;
  double width = 360;
  double height = 216;
  /// Degrees; nothing is drawn turned.
  double rotation = 0;
  std::wstring alternativeText;
  std::wstring title;
  /// The macro that a click runs.
  std::wstring onAction;
  /// The host's number: 1 moves and sizes with the cells, 2 only moves, 3 neither.
  long placement = 2;
  bool lockAspectRatio = false;
  bool locked = true;
  bool visible = true;
  /// Whatever has a greater number lies above.
  long depth = 0;
  bool deleted = false;
};

/// A picture, a group, or a shape that only has to be there.
struct Shape final : FloatingObject {
  /// The host's shape type number; 13 is a picture, 6 a group, 1 a plain shape.
  long type = 13;
  /// What a picture shows and other shapes are filled with; null for none.
  std::shared_ptr<const PictureData> picture;
  /// What was put behind a picture, where nobody sees it.
  std::shared_ptr<const PictureData> backdrop;
  std::vector<std::shared_ptr<Shape>> children;
};

}  // namespace qv::devhost::memory
