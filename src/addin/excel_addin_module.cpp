#include "addin/excel_addin_module.h"

#include "addin/class_factory.h"
#include "addin/connect.h"
#include "foundation/variant.h"
#include "panel/web_view2_pane.h"

namespace qv {
namespace {

HRESULT CreateConnect(REFIID iid, void** object) {
  return MakeCom<CConnect>()->QueryInterface(iid, object);
}

HRESULT CreatePane(REFIID iid, void** object) {
  const ComPtr<CWebView2Pane> pane = MakeCom<CWebView2Pane>();
  pane->FinalConstruct();
  return pane->QueryInterface(iid, object);
}

struct ClassRow {
  const CLSID& classId;
  ObjectCreator create;
};

const ClassRow kClasses[] = {
    {kConnectClassId, CreateConnect},
    {kExcelPaneClassId, CreatePane},
};

}  // namespace

HRESULT CExcelAddinModule::GetClassObject(REFCLSID classId, REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  for (const ClassRow& row : kClasses) {
    if (!IsEqualCLSID(classId, row.classId)) continue;
    return MakeCom<ClassFactory>(row.create)->QueryInterface(iid, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT CExcelAddinModule::CanUnloadNow() {
  return ModuleLocks::Count() == 0 ? S_OK : S_FALSE;
}

}  // namespace qv
