#include "webview2/task_text.h"

#include <objbase.h>

#include <algorithm>

namespace qv::devhost {

HRESULT ReturnText(const std::wstring& text, LPWSTR* result) {
  if (result == nullptr) return E_POINTER;
  const std::size_t units = text.size() + 1;
  *result = static_cast<LPWSTR>(CoTaskMemAlloc(units * sizeof(wchar_t)));
  if (*result == nullptr) return E_OUTOFMEMORY;
  std::copy_n(text.c_str(), units, *result);
  return S_OK;
}

}  // namespace qv::devhost
