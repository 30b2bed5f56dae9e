#include "httpapi/http_clock.h"

#include <windows.h>

namespace qv::devhost {

HttpDate HttpNow() {
  SYSTEMTIME now{};
  GetSystemTime(&now);
  return {now.wDayOfWeek, now.wDay, now.wMonth, now.wYear, now.wHour, now.wMinute, now.wSecond};
}

}  // namespace qv::devhost
