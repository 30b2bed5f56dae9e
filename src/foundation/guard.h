#pragma once

#include <windows.h>

#include <utility>

namespace qv {

/// HRESULT of the exception that is being handled: E_OUTOFMEMORY for std::bad_alloc, the code of a
/// _com_error, E_UNEXPECTED for anything else. Logs one line naming `where`. Call it from a catch block only.
[[nodiscard]] HRESULT HandleCurrentException(const wchar_t* where) noexcept;

/// Runs `body` so that no exception leaves it: the body's HRESULT, or the one of `HandleCurrentException`.
/// Every COM method with an HRESULT goes through it.
template <typename Body>
[[nodiscard]] HRESULT GuardHr(const wchar_t* where, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return HandleCurrentException(where);
  }
}

/// The same for entries without a result: window procedures, timers, posted tasks, thread starts.
template <typename Body>
void Guard(const wchar_t* where, Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    static_cast<void>(HandleCurrentException(where));
  }
}

}  // namespace qv
