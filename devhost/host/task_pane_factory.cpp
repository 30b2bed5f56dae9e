#include "host/task_pane_factory.h"

#include <stdexcept>

#include "engines/common/com_guard.h"
#include "host/late_bound.h"

namespace qv::devhost {
namespace {

std::wstring TextOf(BSTR text) {
  return std::wstring(text ? text : L"", SysStringLen(text));
}

}  // namespace

HRESULT TaskPaneFactory::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                UINT*) noexcept {
  return DISP_E_MEMBERNOTFOUND;
}

HRESULT TaskPaneFactory::CreateCTP(BSTR axId, BSTR title, VARIANT parentWindow,
                                   _CustomTaskPane** pane) noexcept {
  return GuardCom([&]() -> HRESULT {
    if (pane == nullptr) return E_POINTER;
    *pane = nullptr;
    if (panes_ == nullptr) return E_FAIL;
    const HRESULT outcome = parentWindow.vt == VT_DISPATCH ? withWindow_ : withoutWindow_;
    if (FAILED(outcome)) return outcome;
    const ComPtr<IDispatch> window = parentWindow.vt == VT_DISPATCH
                                         ? ComPtr<IDispatch>(parentWindow.pdispVal)
                                         : GetObjectProperty(application_.Get(), L"ActiveWindow");
    if (!window) return E_INVALIDARG;
    // A window that was opened since the last look has no place for a pane yet.
    panes_->Documents().Sync();
    auto* const document = panes_->Documents().FindFor(window.Get());
    if (document == nullptr) return E_INVALIDARG;
    try {
      const auto made = panes_->Open(TextOf(axId), TextOf(title), false, *document);
      made_.push_back(MakeCom<TaskPane>(made.frame, application_, window));
      made_.back()->WithholdControl(withholdsControls_);
      return made_.back().CopyTo(pane);
    } catch (const std::runtime_error&) {
      // What Office says when it cannot make the control; the log has the call that failed.
      return E_FAIL;
    }
  });
}

}  // namespace qv::devhost
