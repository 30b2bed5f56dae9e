#pragma once

#include <string>

namespace qv {

/// Work on many pictures, done slice by slice so that the host handles its messages in between. Host UI
/// thread.
class ImageJob {
 public:
  virtual ~ImageJob() = default;
  /// Works for about `kUiSliceMs`. True when there is more to do.
  [[nodiscard]] virtual bool RunSlice() = 0;
  /// The result text, once there is nothing more to do.
  [[nodiscard]] virtual std::wstring Result() const = 0;
};

}  // namespace qv
