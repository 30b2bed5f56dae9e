#include "addin/ribbon_tab_search.h"
#include "addin/uia_interfaces.h"
#include "foundation/variant.h"

namespace qv {
namespace {

bool IsWantedTab(IUIAutomationElement* element, const std::wstring& label) {
  int type = 0;
  if (FAILED(element->get_CurrentControlType(&type)) || type != kUiaTabItemControlType) return false;
  Bstr name;
  return SUCCEEDED(element->get_CurrentName(name.Put())) && name.View() == label;
}

template <typename Pattern>
ComPtr<Pattern> PatternOf(IUIAutomationElement* element, int id) {
  ComPtr<Pattern> pattern;
  static_cast<void>(element->GetCurrentPatternAs(id, IID_PPV_ARGS(&pattern)));
  return pattern;
}

bool Select(IUIAutomationElement* tab) {
  const auto item = PatternOf<IUIAutomationSelectionItemPattern>(tab, kUiaSelectionItemPattern);
  if (item != nullptr && SUCCEEDED(item->Select())) return true;
  const auto button = PatternOf<IUIAutomationInvokePattern>(tab, kUiaInvokePattern);
  if (button != nullptr && SUCCEEDED(button->Invoke())) return true;
  const auto legacy = PatternOf<IUIAutomationLegacyIAccessiblePattern>(tab, kUiaLegacyAccessiblePattern);
  return legacy != nullptr && SUCCEEDED(legacy->DoDefaultAction());
}

bool SelectBelow(IUIAutomationTreeWalker* walker, IUIAutomationElement* element, const std::wstring& label,
                 SearchBudget& budget, int depth) {
  if (!budget.Take(depth)) return false;
  if (IsWantedTab(element, label)) return Select(element);
  ComPtr<IUIAutomationElement> child;
  if (FAILED(walker->GetFirstChildElement(element, &child))) return false;
  while (child != nullptr && !budget.IsSpent()) {
    if (SelectBelow(walker, child.Get(), label, budget, depth + 1)) return true;
    ComPtr<IUIAutomationElement> next;
    if (FAILED(walker->GetNextSiblingElement(child.Get(), &next))) return false;
    child = next;
  }
  return false;
}

}  // namespace

bool ActivateTabByAutomation(HWND window, const std::wstring& label, SearchBudget& budget) {
  ComPtr<IUIAutomation> automation;
  ComPtr<IUIAutomationTreeWalker> walker;
  ComPtr<IUIAutomationElement> root;
  return SUCCEEDED(CoCreateInstance(kClsidUIAutomation, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_PPV_ARGS(&automation))) &&
         SUCCEEDED(automation->get_ControlViewWalker(&walker)) && walker != nullptr &&
         SUCCEEDED(automation->ElementFromHandle(window, &root)) && root != nullptr &&
         SelectBelow(walker.Get(), root.Get(), label, budget, 0);
}

}  // namespace qv
