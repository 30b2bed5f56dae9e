#include "host/trace_logs.h"

#include <shlobj.h>
#include <windows.h>

#include "foundation/text.h"

namespace qv::devhost {

std::vector<std::string> TraceLogPaths() {
  std::wstring folder(MAX_PATH, L'\0');
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, 0, folder.data()))) return {};
  folder.resize(folder.find(L'\0'));
  folder += L"\\Quorvantis\\log\\";
  return {ToUtf8(folder + L"QuorvantisPane_excel_trace.log"),
          ToUtf8(folder + L"Quorvantis_translate_trace.log")};
}

}  // namespace qv::devhost
