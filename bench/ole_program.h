#pragma once

#include <ole2.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <utility>

#include "measure.h"

namespace qv::bench {

/// Throws std::runtime_error unless `held`.
inline void Require(bool held, const char* otherwise) {
  if (!held) throw std::runtime_error(otherwise);
}

/// Runs `body` with OLE on this thread; the exit status. An exception is one line on standard error.
template <typename Body>
[[nodiscard]] int RunOleProgram(Body&& body) {
  if (FAILED(OleInitialize(nullptr))) return EXIT_FAILURE;
  int status = EXIT_SUCCESS;
  try {
    std::forward<Body>(body)();
    End();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    status = EXIT_FAILURE;
  }
  OleUninitialize();
  return status;
}

}  // namespace qv::bench
