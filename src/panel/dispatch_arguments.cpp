#include "panel/dispatch_arguments.h"

#include <vector>

#include "panel/event_arguments.h"

namespace qv {

ComPtr<IDispatch> ObjectArgument(const DISPPARAMS* params, std::size_t parameter) {
  if (params == nullptr || params->rgvarg == nullptr) return nullptr;
  std::vector<std::int32_t> names;
  if (params->rgdispidNamedArgs != nullptr) {
    names.assign(params->rgdispidNamedArgs, params->rgdispidNamedArgs + params->cNamedArgs);
  }
  const auto index = ArgumentIndex(parameter, params->cArgs, names);
  if (!index) return nullptr;
  const VARIANT& argument = params->rgvarg[*index];
  return argument.vt == VT_DISPATCH ? ComPtr<IDispatch>(argument.pdispVal) : nullptr;
}

}  // namespace qv
