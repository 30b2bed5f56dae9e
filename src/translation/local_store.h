#pragma once

#include <cstddef>
#include <string>

#include "translation/local_snapshot.h"

namespace qv {

/// How much of the store is read, in bytes. The page gets all of it in one script, on the UI thread.
struct StoreLimits {
  std::size_t itemBytes = std::size_t{4} << 20;
  std::size_t totalBytes = std::size_t{16} << 20;
};

/// Folder of the user's local store, without a trailing backslash; empty when there is none.
[[nodiscard]] std::wstring LocalStoreFolder();

/// Reads the user's glossaries and instructions, those of the shared folders last, each folder by id. Missing
/// folders are created. What cannot be read, is malformed or exceeds the limits is skipped with a log line.
[[nodiscard]] LocalSnapshot ReadLocalStore(const std::wstring& folder = LocalStoreFolder(),
                                           const StoreLimits& limits = {});

}  // namespace qv
