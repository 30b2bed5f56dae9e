#pragma once

#include <string>
#include <string_view>

#include "foundation/identity_text.h"

namespace qv {

/// Operating system and native processor architecture, also under emulation.
[[nodiscard]] std::wstring GetOsString();

/// The stable id of this installation, made and stored on first use.
[[nodiscard]] std::wstring GetInstallId();

/// "version" of version.json beside the DLL; "0.0.0" when missing.
[[nodiscard]] std::wstring GetClientVersion();

/// All facts of this process and host; what is stored outside is read once a process. Host UI thread (it
/// reads the host session).
[[nodiscard]] ClientFacts GatherClientFacts();

/// Sends one event in the background; nothing for an empty name, "unknown" for an empty source. Host UI
/// thread.
void SendBeacon(std::wstring_view event, std::wstring_view source);

/// Reports, once per process, that the panel's browser could not start. Host UI thread.
void ReportWebViewInitFailure(std::wstring_view step, long hr);

}  // namespace qv
