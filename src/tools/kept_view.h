#pragma once

#include <oaidl.h>

#include "foundation/variant.h"

namespace qv {

/// What is selected in a window, its active cell and where it is scrolled to, put back at the latest at its
/// end. Host UI thread.
class KeptView {
 public:
  /// `selection` and `window` may be null.
  KeptView(ComPtr<IDispatch> selection, IDispatch* window);
  KeptView(const KeptView&) = delete;
  KeptView& operator=(const KeptView&) = delete;
  ~KeptView();

  /// As far as the host lets it; false when it is busy and should be asked again later. Once true, repeated
  /// calls do nothing.
  [[nodiscard]] bool Restore();

  /// Whether nothing is to be put back any more.
  [[nodiscard]] bool IsBack() const { return selection_ == nullptr && window_ == nullptr; }

  /// Lets go of the host's objects; nothing is put back any more.
  void Forget();

 private:
  ComPtr<IDispatch> selection_;
  ComPtr<IDispatch> window_;
  /// Null unless cells are selected: making a cell active would end the selection of anything else.
  ComPtr<IDispatch> activeCell_;
  Variant scrollRow_;
  Variant scrollColumn_;
};

}  // namespace qv
