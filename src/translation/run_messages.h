#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "translation/translate_request.h"

namespace qv {

// The JSON messages that a run posts to the page, and the page's answer to one of them.

/// Asks the page to translate a batch. Every member is present, also an empty one: the page reads them all.
[[nodiscard]] std::wstring TranslateBatchRequestMessage(std::wstring_view requestId,
                                                        const TranslateRequest& request);

/// Tells the page to give up whatever it still does for a run.
[[nodiscard]] std::wstring TranslateAbortForRunMessage(std::uint64_t runId);

[[nodiscard]] std::wstring SheetWriteBlockedMessage(std::wstring_view message);

/// Reads the page's answer. The number of translations is not checked here.
[[nodiscard]] TranslateResult ParseTranslateBatchResult(std::wstring_view message);

}  // namespace qv
