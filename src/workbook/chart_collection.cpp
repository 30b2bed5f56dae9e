#include "workbook/chart_collection.h"

#include "workbook/automation.h"

namespace qv {

ComPtr<IDispatch> ChartObjectsOf(IDispatch* sheet) {
  Variant value;
  if (SUCCEEDED(InvokeByName(sheet, L"ChartObjects", {}, &value))) {
    if (ComPtr<IDispatch> charts = value.Object()) return charts;
  }
  return GetDispProperty(sheet, L"ChartObjects");
}

}  // namespace qv
