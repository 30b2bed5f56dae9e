#include "workbook/gone_object.h"

#include <windows.h>

#include <algorithm>

namespace qv {

bool IsObjectGone(const HostAnswer& answer) {
  // COM's answers for objects whose server, connection or implementation is gone, and those of Excel's own
  // closed objects.
  constexpr HRESULT kGone[] = {E_POINTER,
                               RPC_E_DISCONNECTED,
                               RPC_E_SERVER_DIED,
                               RPC_E_SERVER_DIED_DNE,
                               RPC_E_INVALID_OBJECT,
                               CO_E_OBJNOTCONNECTED,
                               HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE),
                               static_cast<HRESULT>(0x800401A8),
                               static_cast<HRESULT>(0x800A01A8)};
  return std::ranges::any_of(kGone,
                             [&](HRESULT gone) { return answer.hr == gone || answer.exceptionCode == gone; });
}

}  // namespace qv
