#pragma once

#include <windows.h>

namespace qv {

/// Opens the service's page that translates PDF files in the system's browser. When no browser opens, the
/// user is told in a box that belongs to `owner` (may be null).
void OpenPdfTranslation(HWND owner);

}  // namespace qv
