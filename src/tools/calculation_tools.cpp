#include "tools/calculation_tools.h"

#include <optional>

#include "foundation/text.h"
#include "tools/calculation_mode.h"
#include "tools/tool_arguments.h"
#include "tools/tool_result.h"
#include "workbook/automation.h"
#include "workbook/host_state.h"

namespace qv {
namespace {

constexpr const wchar_t* kCalculation = L"Calculation";

}  // namespace

std::wstring CalcSetMode(const ToolContext& context, const std::wstring& json) {
  const std::wstring word = ToolArguments(json).Text(L"mode");
  const std::optional<std::int32_t> mode = CalculationModeOf(word);
  if (!mode) return ErrorResult(L"unknown mode (manual|automatic|semiautomatic)");
  IDispatch* const application = context.target.Application();
  const DisplayAlertsGuard alertsOff(application);
  const Variant value(*mode);
  if (FAILED(PutDispProperty(application, kCalculation, &value))) {
    return ErrorResult(L"set Calculation failed");
  }
  return Concat(L"{\"ok\":true,\"mode\":\"", word, L"\"}");
}

std::wstring CalculateNow(const ToolContext& context, const std::wstring&) {
  IDispatch* const application = context.target.Application();
  const DisplayAlertsGuard alertsOff(application);
  const bool calculated = SUCCEEDED(InvokeByName(application, L"Calculate", {}, nullptr));
  return calculated ? OkResult() : ErrorResult(L"Calculate failed");
}

std::wstring CalcGetMode(const ToolContext& context, const std::wstring&) {
  Variant mode;
  if (FAILED(GetProperty(context.target.Application(), kCalculation, mode))) {
    return ErrorResult(L"get Calculation failed");
  }
  return Concat(L"{\"mode\":\"", CalculationWordOf(IntegerOf(mode)), L"\"}");
}

}  // namespace qv
