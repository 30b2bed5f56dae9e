#pragma once

#include <oaidl.h>

#include "foundation/variant.h"

namespace qv {

/// What is selected in a window and where it is scrolled to, put back at the latest at its end. Host UI
/// thread.
class KeptView {
 public:
  /// `selection` and `window` may be null.
  KeptView(ComPtr<IDispatch> selection, IDispatch* window);
  KeptView(const KeptView&) = delete;
  KeptView& operator=(const KeptView&) = delete;
  ~KeptView();

  /// As far as the host lets it. Repeated calls do nothing.
  void Restore();

 private:
  ComPtr<IDispatch> selection_;
  ComPtr<IDispatch> window_;
  Variant scrollRow_;
  Variant scrollColumn_;
};

}  // namespace qv
