#include "addin/ribbon_xml.h"

#include "addin/module_resource.h"
#include "addin/resources/resource.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "foundation/variant.h"

namespace qv {

HRESULT LoadRibbonXml(BSTR& xml) {
  xml = nullptr;
  const auto bytes = ModuleResource(IDR_RIBBON, L"XML");
  if (!bytes || bytes->empty()) {
    PaneLog(L"Excel GetCustomUI failed (XML resource)\r\n");
    return HRESULT_FROM_WIN32(ERROR_RESOURCE_NAME_NOT_FOUND);
  }
  const std::wstring text = FromUtf8(*bytes);
  xml = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (xml == nullptr) {
    PaneLog(L"Excel GetCustomUI failed (SysAllocString)\r\n");
    return E_OUTOFMEMORY;
  }
  PaneLog(Concat(L"Excel GetCustomUI OK chars=", text.size(), L"\r\n"));
  return S_OK;
}

}  // namespace qv
