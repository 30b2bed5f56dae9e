#pragma once

#include <winsock2.h>

#include <http.h>

#include "httpapi/exchange.h"

namespace qv::devhost {

/// Writes HTTP_REQUEST and everything it points to into the buffer, which holds at least that structure. When
/// the rest does not fit: ERROR_MORE_DATA, and only the ids are filled. `needed` is the whole size either
/// way.
[[nodiscard]] ULONG DescribeRequest(const Exchange& exchange, HTTP_REQUEST* buffer, ULONG size,
                                    ULONG& needed);

}  // namespace qv::devhost
