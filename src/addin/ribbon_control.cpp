#include "addin/ribbon_control.h"

#include "addin/office_interfaces.h"
#include "foundation/variant.h"
#include "workbook/automation.h"

namespace qv {

RibbonControlNames ReadRibbonControl(IDispatch* control) {
  if (control == nullptr) return {};
  ComPtr<IRibbonControl> typed;
  Bstr id;
  Bstr tag;
  if (SUCCEEDED(control->QueryInterface(IID_PPV_ARGS(&typed))) && SUCCEEDED(typed->get_Id(id.Put()))) {
    static_cast<void>(typed->get_Tag(tag.Put()));
    return {std::wstring(id.View()), std::wstring(tag.View())};
  }
  return {GetStringProperty(control, L"Id"), GetStringProperty(control, L"Tag")};
}

}  // namespace qv
