#include "addin/class_factory.h"

#include "foundation/guard.h"

namespace qv {

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  return GuardHr(L"CreateInstance", [&] { return create_(iid, object); });
}

HRESULT ClassFactory::LockServer(BOOL lock) noexcept {
  if (lock) {
    ModuleLocks::Add();
  } else {
    ModuleLocks::Remove();
  }
  return S_OK;
}

}  // namespace qv
