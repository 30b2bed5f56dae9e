#include "services/http_api.h"

#include <optional>

namespace qv {
namespace {

template <typename Function>
bool Find(HMODULE library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  return function != nullptr;
}

std::optional<HttpApi> Load() {
  // Neither the current folder nor the PATH, from where anybody could bring a library of that name.
  const HMODULE library = LoadLibraryExW(L"httpapi.dll", nullptr,
                                         LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (library == nullptr) return std::nullopt;
  HttpApi api;
  const bool found =
      Find(library, "HttpInitialize", api.initialize) && Find(library, "HttpTerminate", api.terminate) &&
      Find(library, "HttpCreateHttpHandle", api.createQueue) && Find(library, "HttpAddUrl", api.addUrl) &&
      Find(library, "HttpRemoveUrl", api.removeUrl) &&
      Find(library, "HttpReceiveHttpRequest", api.receiveRequest) &&
      Find(library, "HttpReceiveRequestEntityBody", api.receiveBody) &&
      Find(library, "HttpSendHttpResponse", api.sendResponse) &&
      Find(library, "HttpSendResponseEntityBody", api.sendBody) &&
      Find(library, "HttpCancelHttpRequest", api.cancelRequest) &&
      Find(library, "HttpShutdownRequestQueue", api.shutdownQueue);
  return found ? std::optional(api) : std::nullopt;
}

}  // namespace

const HttpApi* HttpApi::Get() {
  static const std::optional<HttpApi> api = Load();
  return api ? &*api : nullptr;
}

}  // namespace qv
