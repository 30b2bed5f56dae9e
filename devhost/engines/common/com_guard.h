#pragma once

#include <windows.h>

#include <new>
#include <utility>

namespace qv::devhost {

/// Runs `body` so that no C++ exception leaves a COM method of the development host: the body's HRESULT,
/// E_OUTOFMEMORY when memory ran out, E_UNEXPECTED for anything else. The add-in's own guard logs through the
/// add-in's log, which the host must not do.
template <typename Body>
[[nodiscard]] HRESULT GuardCom(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace qv::devhost
