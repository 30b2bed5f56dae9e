#include "addin/pane_width_store.h"

#include <windows.h>

#include <optional>

#include "foundation/logging.h"
#include "foundation/settings.h"
#include "foundation/settings_text.h"
#include "foundation/text.h"

namespace qv {

int LoadInitialPaneWidth() {
  const std::optional<int> stored = StoredPaneWidth(ReadSettingsText());
  const int width = stored.value_or(kDefaultPaneWidthPt);
  PaneLog(Concat(L"PaneWidth load pt=", width, L" source=", stored ? L"file" : L"default", L" file=",
                 GetSettingsPath(), L"\r\n"));
  return width;
}

void SaveObservedWidth(PaneWidthRecord& record, int width) {
  SetLastError(ERROR_SUCCESS);
  const bool ok = SavePaneWidthPt(width);
  const DWORD error = ok ? ERROR_SUCCESS : GetLastError();
  PaneLog(PaneWidthSaved(record, ok, error, GetSettingsPath()) + L"\r\n");
}

void SaveWidthOfShutdown(int width) {
  PaneLog(Concat(L"PaneWidth shutdown-save pt=", width, L"\r\n"));
  // A failure leaves what the last tick saved.
  static_cast<void>(SavePaneWidthPt(width));
}

}  // namespace qv
