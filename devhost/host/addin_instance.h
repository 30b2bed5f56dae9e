#pragma once

#include <string>

#include "foundation/variant.h"
#include "host/host_dispatch.h"

namespace qv::devhost {

/// What the host knows about one loaded add-in and hands to it at its connection, as Office's COMAddIn does.
class AddinInstance final : public HostDispatch<IDispatch> {
 public:
  explicit AddinInstance(std::wstring progId) : progId_(std::move(progId)) {}

  /// Breaks the cycle of the add-in's own object, which add-ins like to put here.
  void Clear() { object_.Reset(); }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) noexcept override;

 private:
  [[nodiscard]] std::span<const DispatchName> Names() const noexcept override;

  std::wstring progId_;
  ComPtr<IDispatch> object_;
};

}  // namespace qv::devhost
