#include "addin/host_message.h"

#include <string>

#include "foundation/catalog.h"
#include "foundation/host_session.h"
#include "workbook/automation.h"

namespace qv {
namespace {

HWND HostWindow() {
  const std::intptr_t handle = GetIntProperty(HostSession::Get().Application().Get(), L"Hwnd");
  const HWND window = reinterpret_cast<HWND>(handle);
  return IsWindow(window) ? window : GetActiveWindow();
}

}  // namespace

int ShowMessage(HWND owner, std::wstring_view text, UINT type) {
  return MessageBoxW(owner, std::wstring(text).c_str(), GetCatalogText(L"msg.title").c_str(), type);
}

void ShowHostWarning(std::wstring_view text) {
  ShowMessage(HostWindow(), text, MB_OK | MB_ICONWARNING);
}

}  // namespace qv
