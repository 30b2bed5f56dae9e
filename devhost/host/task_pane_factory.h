#pragma once

#include "addin/office_interfaces.h"
#include "foundation/variant.h"
#include "host/host_dispatch.h"
#include "host/pane_list.h"

namespace qv::devhost {

/// Makes task panes for the add-in. The pane list is borrowed; `Detach` cuts the factory off when the host
/// ends first.
class TaskPaneFactory final : public HostDispatch<ICTPFactory> {
 public:
  TaskPaneFactory(PaneList& panes, ComPtr<IDispatch> application)
      : panes_(&panes), application_(std::move(application)) {}

  void Detach() {
    panes_ = nullptr;
    application_.Reset();
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateCTP(BSTR axId, BSTR title, VARIANT parentWindow,
                                      _CustomTaskPane** pane) noexcept override;

 private:
  PaneList* panes_;
  ComPtr<IDispatch> application_;
};

}  // namespace qv::devhost
