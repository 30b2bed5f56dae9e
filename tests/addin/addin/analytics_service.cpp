#include "analytics_service.h"

#include "host/command_line.h"
#include "host/settings_file.h"

namespace qv {

AnalyticsService::AnalyticsService(std::size_t events)
    : server_(std::vector<std::string>(events,
                                       "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n")),
      events_(events) {
  devhost::WriteServiceAddress({"http", "127.0.0.1", server_.Endpoint().port});
}

std::string AnalyticsService::Find(const std::string& event) {
  for (std::size_t count = 1; count <= events_; ++count) {
    for (const std::string& request : Events(count)) {
      if (request.find('"' + event + '"') != std::string::npos) return request;
    }
  }
  return {};
}

}  // namespace qv
