#include "tools/tool_result.h"

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {

std::wstring ErrorResult(std::wstring_view message) {
  return Concat(L"{\"error\":", JsonQuote(message), L'}');
}

std::wstring OkResult() {
  return L"{\"ok\":true}";
}

std::wstring AppliedResult(int applied) {
  return Concat(L"{\"ok\":true,\"applied\":", applied, L'}');
}

bool IsUnderstood(std::wstring_view result) {
  return !Contains(result, Concat(L"\"error\":\"", kUnknownActionText));
}

}  // namespace qv
