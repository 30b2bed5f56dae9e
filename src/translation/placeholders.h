#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "translation/run_flags.h"
#include "translation/translate_request.h"

namespace qv {

/// Number of placeholder tokens such as [[QV_REF_1]]: two brackets, the letters QV in any case, "_", letters
/// or digits (or none), "_", digits, two brackets.
[[nodiscard]] std::int32_t CountPlaceholders(std::wstring_view text);

/// Translates one text alone, in one attempt.
using RetranslateOne = std::function<TranslateResult(const std::wstring& text)>;

/// Checks that each translation holds as many tokens as its source, translating those that do not once more.
/// `translations` (one a source) is changed in place. The result has no translations of its own: ok, or code
/// and message.
[[nodiscard]] TranslateResult VerifyPlaceholders(const std::vector<std::wstring>& sources,
                                                 std::vector<std::wstring>& translations,
                                                 const RunFlags& flags, const RetranslateOne& retranslate);

}  // namespace qv
