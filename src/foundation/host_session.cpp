#include "foundation/host_session.h"

#include <windows.h>

#include <array>

#include "foundation/dispatch.h"
#include "foundation/settings.h"
#include "foundation/text.h"

namespace qv {
namespace {

/// MsoAppLanguageID: the user interface's language.
constexpr long kLanguageOfUserInterface = 2;

std::wstring ProcessFileName() {
  std::array<wchar_t, MAX_PATH> path{};
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), MAX_PATH);
  return FileNameOf({path.data(), length});
}

}  // namespace

const wchar_t* HostKindText(HostKind kind) {
  return kind == HostKind::kWpsExcel ? L"wps-excel" : L"excel";
}

bool IsWpsProcess() {
  static const bool isWps = [] {
    const std::wstring name = ProcessFileName();
    for (const wchar_t* wpsName : {L"wps.exe", L"wpp.exe", L"et.exe"}) {
      if (EqualsIgnoreAsciiCase(name, wpsName)) return true;
    }
    return false;
  }();
  return isWps;
}

HostSession& HostSession::Get() {
  // Never destroyed: at process exit the Application's server may be gone, and releasing it would crash the
  // host.
  static HostSession* const session = new HostSession();
  return *session;
}

void HostSession::Connect(ComPtr<IDispatch> application, HostKind kind, std::wstring version) {
  application_ = std::move(application);
  kind_ = kind;
  version_ = std::move(version);
  endpoint_ = ServiceEndpointFrom(ReadSettingsText());
}

void HostSession::Disconnect() {
  application_.Reset();
}

unsigned HostSession::HostLanguageId() const {
  Variant settings;
  if (FAILED(InvokeMember(application_.Get(), L"LanguageSettings", DISPATCH_PROPERTYGET, {}, &settings)))
    return 0;
  const Variant which[] = {Variant(kLanguageOfUserInterface)};
  Variant id;
  if (FAILED(InvokeMember(settings.Object().Get(), L"LanguageID", DISPATCH_PROPERTYGET, which, &id)))
    return 0;
  Variant number;
  if (FAILED(VariantChangeType(number.Put(), &id.Get(), 0, VT_I4))) return 0;
  return number->lVal > 0 ? static_cast<unsigned>(number->lVal) : 0;
}

}  // namespace qv
