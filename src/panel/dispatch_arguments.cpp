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
  if (argument.vt == VT_DISPATCH) return argument.pdispVal;
  // Copied only where it is by reference: an array would be copied too.
  const bool byReference = argument.vt == (VT_DISPATCH | VT_BYREF) || argument.vt == (VT_VARIANT | VT_BYREF);
  return byReference && argument.byref != nullptr ? Variant(argument).Object() : nullptr;
}

}  // namespace qv
