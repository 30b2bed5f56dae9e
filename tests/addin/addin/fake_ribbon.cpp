#include "fake_ribbon.h"

#include <oleacc.h>

#include <utility>
#include <vector>

#include "foundation/com_object.h"
#include "foundation/variant.h"

namespace qv {

/// One element: role, name and children; everything else is not implemented.
class FakeRibbonElement final : public ComObject<IAccessible> {
 public:
  FakeRibbonElement(long role, std::wstring name, int* activations)
      : role_(role), name_(std::move(name)), activations_(activations) {}

  void Add(ComPtr<FakeRibbonElement> child) { children_.push_back(std::move(child)); }

  HRESULT STDMETHODCALLTYPE get_accChildCount(long* count) noexcept override {
    *count = static_cast<long>(children_.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) noexcept override {
    *object = nullptr;
    const long index = child.lVal - 1;
    if (index < 0 || index >= static_cast<long>(children_.size())) return E_INVALIDARG;
    *object = ComPtr<IDispatch>(children_[static_cast<std::size_t>(index)].Get()).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT, BSTR* name) noexcept override {
    *name = Bstr(name_).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT, VARIANT* role) noexcept override {
    *role = Variant(role_).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) noexcept override {
    if (activations_ == nullptr) return DISP_E_MEMBERNOTFOUND;
    ++*activations_;
    return S_OK;
  }

  // Nobody asks for the rest.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch**) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT, BSTR*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT, VARIANT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR*, VARIANT, long*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT, BSTR*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE accSelect(long, VARIANT) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE accLocation(long*, long*, long*, long*, VARIANT) noexcept override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE accNavigate(long, VARIANT, VARIANT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE accHitTest(long, long, VARIANT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) noexcept override { return E_NOTIMPL; }

 private:
  long role_;
  std::wstring name_;
  int* activations_;
  std::vector<ComPtr<FakeRibbonElement>> children_;
};

FakeRibbon::FakeRibbon(HWND parent, const std::wstring& tabName)
    : root_(new FakeRibbonElement(ROLE_SYSTEM_WINDOW, L"Ribbon", nullptr)) {
  const auto group = MakeCom<FakeRibbonElement>(ROLE_SYSTEM_PAGETABLIST, L"Tabs", nullptr);
  group->Add(MakeCom<FakeRibbonElement>(ROLE_SYSTEM_PAGETAB, L"Home", nullptr));
  group->Add(MakeCom<FakeRibbonElement>(ROLE_SYSTEM_PUSHBUTTON, tabName, &otherActivations_));
  group->Add(MakeCom<FakeRibbonElement>(ROLE_SYSTEM_PAGETAB, tabName, &tabActivations_));
  root_->Add(group);
  WNDCLASSW description{};
  description.lpfnWndProc = &FakeRibbon::Procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = L"NetUIHWND";
  RegisterClassW(&description);
  window_ = CreateWindowExW(0, description.lpszClassName, L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, parent,
                            nullptr, description.hInstance, nullptr);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(root_));
}

FakeRibbon::~FakeRibbon() {
  if (IsWindow(window_)) DestroyWindow(window_);
  root_->Release();
}

LRESULT CALLBACK FakeRibbon::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  auto* const root = reinterpret_cast<FakeRibbonElement*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_GETOBJECT && root != nullptr && static_cast<LONG>(lparam) == OBJID_CLIENT)
    return LresultFromObject(__uuidof(IAccessible), wparam, root);
  return DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace qv
