#include "foundation/window_class.h"

#include "foundation/module.h"

namespace qv {

WindowClass::WindowClass(const wchar_t* name, WNDPROC procedure, HBRUSH background, UINT style)
    : name_(name) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof(description);
  description.style = style;
  description.lpfnWndProc = procedure;
  description.hInstance = ThisModule();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = background;
  description.lpszClassName = name;
  // Without it no window of the class is made, which is where the failure shows.
  RegisterClassExW(&description);
}

WindowClass::~WindowClass() {
  UnregisterClassW(name_, ThisModule());
}

}  // namespace qv
