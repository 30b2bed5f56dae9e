#pragma once

#include <unknwn.h>

#include "foundation/com_object.h"

namespace qv {

/// Makes one object and asks it for an interface.
using ObjectCreator = HRESULT (*)(REFIID iid, void** object);

/// The one class factory: creates objects of the class that it was made for.
class ClassFactory final : public ComObject<IClassFactory> {
 public:
  explicit ClassFactory(ObjectCreator create) : create_(create) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override;

 private:
  ObjectCreator create_;
};

}  // namespace qv
