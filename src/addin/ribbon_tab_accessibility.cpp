#include <windows.h>

#include <oleacc.h>

#include <algorithm>
#include <vector>

#include "addin/ribbon_tab_search.h"
#include "foundation/variant.h"

namespace qv {
namespace {

/// More children than any level of a ribbon has.
constexpr long kMaxChildren = 512;

/// An element: an object, or a part of its parent's object that has no object of its own.
struct Element {
  ComPtr<IAccessible> object;
  Variant child = Variant(static_cast<long>(CHILDID_SELF));
};

bool IsWantedTab(const Element& element, const std::wstring& label) {
  Variant role;
  if (FAILED(element.object->get_accRole(element.child.Get(), role.Put()))) return false;
  if (role.Type() != VT_I4 || role->lVal != ROLE_SYSTEM_PAGETAB) return false;
  Bstr name;
  return SUCCEEDED(element.object->get_accName(element.child.Get(), name.Put())) && name.View() == label;
}

std::vector<Variant> ChildrenOf(IAccessible* object) {
  long count = 0;
  if (FAILED(object->get_accChildCount(&count)) || count <= 0) return {};
  std::vector<VARIANT> raw(static_cast<std::size_t>(std::min(count, kMaxChildren)));
  long obtained = 0;
  if (FAILED(AccessibleChildren(object, 0, static_cast<long>(raw.size()), raw.data(), &obtained))) return {};
  std::vector<Variant> children(static_cast<std::size_t>(std::max(obtained, 0L)));
  for (std::size_t i = 0; i < children.size(); ++i)
    *children[i].Put() = raw[i];
  return children;
}

bool ActivateBelow(const Element& element, const std::wstring& label, SearchBudget& budget, int depth) {
  if (!budget.Take(depth)) return false;
  if (IsWantedTab(element, label)) return SUCCEEDED(element.object->accDoDefaultAction(element.child.Get()));
  if (element.child->lVal != CHILDID_SELF) return false;
  for (const Variant& child : ChildrenOf(element.object.Get())) {
    if (budget.IsSpent()) return false;
    Element next{element.object, child};
    if (const ComPtr<IDispatch> dispatch = child.Object()) {
      next = {};
      if (FAILED(dispatch.As(&next.object))) continue;
    } else if (child.Type() != VT_I4) {
      continue;
    }
    if (ActivateBelow(next, label, budget, depth + 1)) return true;
  }
  return false;
}

}  // namespace

bool ActivateTabByAccessibility(HWND window, const std::wstring& label, SearchBudget& budget) {
  Element root;
  const HRESULT hr =
      AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                 reinterpret_cast<void**>(root.object.GetAddressOf()));
  return SUCCEEDED(hr) && root.object != nullptr && ActivateBelow(root, label, budget, 0);
}

}  // namespace qv
