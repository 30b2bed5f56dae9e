// The four functions that COM and regsvr32 find in the DLL.

#include <objbase.h>
#include <olectl.h>

#include "addin/excel_addin_module.h"
#include "addin/registration.h"
#include "foundation/guard.h"

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  return qv::GuardHr(L"DllGetClassObject",
                     [&] { return qv::CExcelAddinModule::GetClassObject(classId, iid, object); });
}

STDAPI DllCanUnloadNow() {
  return qv::CExcelAddinModule::CanUnloadNow();
}

STDAPI DllRegisterServer() {
  return qv::GuardHr(L"DllRegisterServer", [] { return qv::RegisterAddIn(); });
}

STDAPI DllUnregisterServer() {
  return qv::GuardHr(L"DllUnregisterServer", [] { return qv::UnregisterAddIn(); });
}
