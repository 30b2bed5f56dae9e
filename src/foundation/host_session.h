#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

#include "foundation/service_endpoint.h"

namespace qv {

/// Which family of host the add-in runs in.
enum class HostKind { kExcel, kWpsExcel };

/// "excel" or "wps-excel".
[[nodiscard]] const wchar_t* HostKindText(HostKind kind);

/// Whether the process is WPS by its executable name ("wps.exe", "wpp.exe", "et.exe"); read once.
[[nodiscard]] bool IsWpsProcess();

/// Process-wide host state, filled by the connection object and read by panes, which the host creates on its
/// own by ProgID. Host UI thread only, except `Endpoint` and `Version`, which workers may copy from before
/// they start.
class HostSession {
 public:
  /// The one instance.
  [[nodiscard]] static HostSession& Get();

  void Connect(Microsoft::WRL::ComPtr<IDispatch> application, HostKind kind, std::wstring version);
  /// Drops the Application reference; the kind and version stay for late logging.
  void Disconnect();

  /// Null while not connected.
  [[nodiscard]] const Microsoft::WRL::ComPtr<IDispatch>& Application() const { return application_; }
  [[nodiscard]] HostKind Kind() const { return kind_; }
  [[nodiscard]] const std::wstring& Version() const { return version_; }
  /// Read from the settings file at each connection.
  [[nodiscard]] const ServiceEndpoint& Endpoint() const { return endpoint_; }

  /// The host's user-interface language id (a Windows LANGID), 0 when it cannot be asked.
  [[nodiscard]] unsigned HostLanguageId() const;

 private:
  HostSession() = default;

  Microsoft::WRL::ComPtr<IDispatch> application_;
  HostKind kind_ = HostKind::kExcel;
  std::wstring version_;
  ServiceEndpoint endpoint_ = DefaultServiceEndpoint();
};

}  // namespace qv
