#include "foundation/guard.h"

#include <comdef.h>

#include <exception>
#include <new>

#include "foundation/logging.h"
#include "foundation/text.h"

namespace qv {
namespace {

HRESULT LogAndReturn(const wchar_t* where, HRESULT hr) noexcept {
  try {
    PaneLog(Concat(where, L" exception hr=0x", Hex8(hr), L"\r\n"));
  } catch (...) {
    // Nothing is left that could report it.
  }
  return hr;
}

}  // namespace

HRESULT HandleCurrentException(const wchar_t* where) noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return LogAndReturn(where, E_OUTOFMEMORY);
  } catch (const _com_error& error) {
    return LogAndReturn(where, error.Error());
  } catch (...) {
    return LogAndReturn(where, E_UNEXPECTED);
  }
}

}  // namespace qv
