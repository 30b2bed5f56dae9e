#pragma once

#include <winsock2.h>

#include <http.h>

namespace qv {

/// The functions of the HTTP Server API that the local services call. The library is loaded with the first
/// service, not with the add-in, and stays until the process ends.
struct HttpApi {
  decltype(&::HttpInitialize) initialize = nullptr;
  decltype(&::HttpTerminate) terminate = nullptr;
  decltype(&::HttpCreateHttpHandle) createQueue = nullptr;
  decltype(&::HttpAddUrl) addUrl = nullptr;
  decltype(&::HttpRemoveUrl) removeUrl = nullptr;
  decltype(&::HttpReceiveHttpRequest) receiveRequest = nullptr;
  decltype(&::HttpReceiveRequestEntityBody) receiveBody = nullptr;
  decltype(&::HttpSendHttpResponse) sendResponse = nullptr;
  decltype(&::HttpSendResponseEntityBody) sendBody = nullptr;
  decltype(&::HttpCancelHttpRequest) cancelRequest = nullptr;
  decltype(&::HttpShutdownRequestQueue) shutdownQueue = nullptr;

  /// Null where the library or one of the functions is missing. Any thread.
  [[nodiscard]] static const HttpApi* Get();
};

}  // namespace qv
