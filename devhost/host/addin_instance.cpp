#include "host/addin_instance.h"

#include <array>

#include "engines/common/com_guard.h"

namespace qv::devhost {
namespace {

constexpr DISPID kProgId = 3;
constexpr DISPID kConnect = 6;
constexpr DISPID kObject = 7;

constexpr std::array<DispatchName, 3> kNames = {
    {{L"ProgId", kProgId}, {L"Connect", kConnect}, {L"Object", kObject}}};

}  // namespace

std::span<const DispatchName> AddinInstance::Names() const noexcept {
  return kNames;
}

HRESULT AddinInstance::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                              EXCEPINFO*, UINT*) noexcept {
  return GuardCom([&]() -> HRESULT {
    const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    if (isPut && id == kObject && arguments != nullptr && arguments->cArgs == 1) {
      object_ = Variant(arguments->rgvarg[0]).Object();
      return S_OK;
    }
    if (isPut || result == nullptr) return DISP_E_MEMBERNOTFOUND;
    switch (id) {
      case kProgId:
        *result = Variant(progId_).Detach();
        return S_OK;
      case kConnect:
        *result = Variant(true).Detach();
        return S_OK;
      case kObject:
        *result = Variant(object_.Get()).Detach();
        return S_OK;
      default:
        return DISP_E_MEMBERNOTFOUND;
    }
  });
}

}  // namespace qv::devhost
