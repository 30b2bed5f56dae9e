#include "addin/host_message.h"

#include <string>

#include "addin/host_window.h"
#include "foundation/catalog.h"

namespace qv {

int ShowMessage(HWND owner, std::wstring_view text, UINT type) {
  return MessageBoxW(owner, std::wstring(text).c_str(), GetCatalogText(L"msg.title").c_str(), type);
}

void ShowHostWarning(std::wstring_view text) {
  ShowMessage(BoxOwner(), text, MB_OK | MB_ICONWARNING);
}

}  // namespace qv
