#pragma once

#include <vector>

#include "addin/office_interfaces.h"
#include "foundation/variant.h"
#include "host/host_dispatch.h"
#include "host/pane_list.h"
#include "host/task_pane.h"

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
    made_.clear();
  }

  /// How creations end from now on, with a window as parent and without one; a failure makes nothing.
  void SetOutcomes(HRESULT withWindow, HRESULT withoutWindow) {
    withWindow_ = withWindow;
    withoutWindow_ = withoutWindow;
  }
  /// Panes made from now on keep their control to themselves.
  void WithholdControls() { withholdsControls_ = true; }
  /// What was made so far, oldest first; kept until `Detach`.
  [[nodiscard]] const std::vector<ComPtr<TaskPane>>& Made() const { return made_; }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) noexcept override;
  HRESULT STDMETHODCALLTYPE CreateCTP(BSTR axId, BSTR title, VARIANT parentWindow,
                                      _CustomTaskPane** pane) noexcept override;

 private:
  PaneList* panes_;
  ComPtr<IDispatch> application_;
  bool withholdsControls_ = false;
  HRESULT withWindow_ = S_OK;
  HRESULT withoutWindow_ = S_OK;
  std::vector<ComPtr<TaskPane>> made_;
};

}  // namespace qv::devhost
