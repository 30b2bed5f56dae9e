#pragma once

#include <oaidl.h>

#include "foundation/variant.h"
#include "workbook/automation.h"

namespace qv {

/// A shape without its turn for as long as this lives, so that what is exported can be read and, once it is
/// back in the shape's place, is not turned twice. The turn, and a workbook that was saved, are put back. A
/// host that refuses leaves the shape turned. Host UI thread.
class UprightShape {
 public:
  /// `sheet` is the one that the shape lies on.
  UprightShape(IDispatch* sheet, IDispatch* shape);
  UprightShape(const UprightShape&) = delete;
  UprightShape& operator=(const UprightShape&) = delete;
  ~UprightShape();

 private:
  ComPtr<IDispatch> shape_;
  /// Null unless it was saved.
  ComPtr<IDispatch> savedBook_;
  /// Degrees.
  double turn_ = 0;
};

}  // namespace qv
