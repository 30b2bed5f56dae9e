#pragma once

#include <windows.h>

namespace qv {

/// The DLL as a COM server: which classes it has and whether it may go.
class CExcelAddinModule {
 public:
  /// The class factory of one of the two classes; CLASS_E_CLASSNOTAVAILABLE for any other.
  [[nodiscard]] static HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object);

  /// S_OK when no object of the module lives and nobody locks it, else S_FALSE.
  [[nodiscard]] static HRESULT CanUnloadNow();
};

}  // namespace qv
