#include "addin/ui_language_window.h"

#include <windowsx.h>

#include <algorithm>
#include <string>
#include <utility>

#include "addin/ui_language_paint.h"
#include "addin/ui_languages.h"
#include "foundation/catalog.h"
#include "foundation/device_context.h"
#include "foundation/dpi.h"
#include "foundation/guard.h"
#include "foundation/logging.h"
#include "foundation/module.h"
#include "foundation/text.h"
#include "foundation/window_class.h"
#include "foundation/window_dpi.h"

namespace qv {
namespace {

constexpr wchar_t kClassName[] = L"QuorvantisUiLangDialog2";
constexpr wchar_t kFontName[] = L"Microsoft YaHei UI";
constexpr int kTitlePixels = 18;
constexpr int kBodyPixels = 13;
constexpr int kListPixels = 14;

constexpr int kTitleId = 101;
constexpr int kBodyId = 102;
constexpr int kListId = 103;

/// DWMWA_WINDOW_CORNER_PREFERENCE and DWMWCP_ROUND, known to Windows 11 alone.
constexpr DWORD kCornerPreference = 33;
constexpr DWORD kRoundCorners = 2;

/// Answer to WM_CREATE.
constexpr LRESULT kCreationFailed = -1;

/// The dialog that is open, of which there is at most one; null when none is.
HWND g_open = nullptr;

UniqueFont MakeFont(int pixels, int weight, int dpi) {
  return UniqueFont(CreateFontW(-ScaleToDpi(pixels, dpi), 0, 0, 0, weight, FALSE, FALSE, FALSE,
                                DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                                DEFAULT_PITCH | FF_DONTCARE, kFontName));
}

void RoundCorners(HWND window) {
  using SetAttribute = HRESULT(WINAPI*)(HWND, DWORD, const void*, DWORD);
  const UniqueModule library(LoadLibraryExW(L"dwmapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
  if (!library) return;
  const auto setAttribute = reinterpret_cast<SetAttribute>(
      reinterpret_cast<void*>(GetProcAddress(library.Get(), "DwmSetWindowAttribute")));
  // Refused before Windows 11: the corners stay square.
  if (setAttribute != nullptr)
    static_cast<void>(setAttribute(window, kCornerPreference, &kRoundCorners, sizeof(kRoundCorners)));
}

/// What the screen has room for around a window, the task bar left out.
RECT WorkArea(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

RECT AsRect(const DialogArea& area) {
  return {area.left, area.top, area.Right(), area.Bottom()};
}

void Place(HWND control, const DialogArea& area, HFONT font) {
  SetWindowPos(control, nullptr, area.left, area.top, area.width, area.height, SWP_NOZORDER | SWP_NOACTIVATE);
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void ShowOpenDialog() {
  // A minimised owner takes its dialog out of sight.
  if (const HWND owner = GetWindow(g_open, GW_OWNER); IsIconic(owner)) ShowWindow(owner, SW_RESTORE);
  SetActiveWindow(g_open);
}

/// Where `length` starts so that it is in the middle of [from, to), moved into [least, limit) where it fits.
int Centered(LONG from, LONG to, int length, LONG least, LONG limit) {
  const LONG start = from + (to - from - length) / 2;
  return static_cast<int>(std::max(least, std::min(start, limit - length)));
}

}  // namespace

void UiLanguageWindow::RunModal(HWND owner) {
  if (g_open != nullptr) {
    ShowOpenDialog();
    return;
  }
  const HWND focusBefore = GetFocus();
  if (!Create(owner)) {
    PaneLog(Concat(L"Excel UiLangDialog failed error=", GetLastError(), L"\r\n"));
    return;
  }
  g_open = handle_;
  DisabledWindows lock(owner_, handle_);
  lock_ = &lock;
  ShowWindow(handle_, SW_SHOW);
  SetFocus(list_);
  RunMessages();
  Close();
  lock_ = nullptr;
  g_open = nullptr;
  // Not when the user has gone on to another window: the focus would drag this one in front of it.
  if (IsWindow(focusBefore) && GetActiveWindow() == owner) SetFocus(focusBefore);
}

bool UiLanguageWindow::Create(HWND owner) {
  static const WindowClass registered(kClassName, &UiLanguageWindow::Procedure,
                                      static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)), CS_DROPSHADOW);
  owner_ = owner;
  // Made where it will be shown, so that its DPI is that screen's.
  const RECT work = WorkArea(owner);
  return CreateWindowExW(0, kClassName, GetCatalogText(L"settings.title").c_str(), WS_POPUP | WS_CLIPCHILDREN,
                         work.left, work.top, 0, 0, owner, nullptr, ThisModule(), this) != nullptr;
}

HWND UiLanguageWindow::CreateControl(const wchar_t* className, const wchar_t* text, DWORD style,
                                     DWORD exStyle, int id) {
  return CreateWindowExW(exStyle, className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, handle_,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ThisModule(), nullptr);
}

bool UiLanguageWindow::CreateControls() {
  const DWORD textStyle = SS_NOPREFIX | (rightToLeft_ ? SS_RIGHT : SS_LEFT);
  const DWORD textExStyle = rightToLeft_ ? WS_EX_RTLREADING : 0;
  const auto text = [&](const wchar_t* key, int id) {
    return CreateControl(L"STATIC", GetCatalogText(key).c_str(), textStyle, textExStyle, id);
  };
  const auto button = [&](const wchar_t* key, int id) {
    return CreateControl(L"BUTTON", GetCatalogText(key).c_str(), BS_OWNERDRAW | WS_TABSTOP, 0, id);
  };
  body_ = text(L"settings.body", kBodyId);
  // Right ahead of the list, which screen readers call by the text before it.
  title_ = text(L"settings.title", kTitleId);
  // The list keeps the texts itself, for screen readers and for typing the first letter.
  list_ = CreateControl(
      L"LISTBOX", GetCatalogText(L"settings.title").c_str(),
      LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_TABSTOP, 0,
      kListId);
  ok_ = button(L"settings.ok", IDOK);
  cancel_ = button(L"settings.cancel", IDCANCEL);
  lastFocus_ = list_;
  for (const HWND control : {title_, body_, list_, ok_, cancel_}) {
    if (control == nullptr) return false;
  }
  FillList();
  return true;
}

void UiLanguageWindow::FillList() {
  for (const UiLanguage& language : UiLanguages())
    SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(language.name));
  SendMessageW(list_, LB_SETCURSEL, static_cast<WPARAM>(current_.value_or(-1)), 0);
}

void UiLanguageWindow::ChooseColors() {
  colors_ = ChooseUiLanguageColors();
  ground_ = UniqueBrush(CreateSolidBrush(colors_.ground));
}

void UiLanguageWindow::MakeFonts() {
  titleFont_ = MakeFont(kTitlePixels, FW_SEMIBOLD, dpi_);
  bodyFont_ = MakeFont(kBodyPixels, FW_NORMAL, dpi_);
  listFont_ = MakeFont(kListPixels, FW_NORMAL, dpi_);
}

int UiLanguageWindow::MeasureBody() const {
  const std::wstring text = GetCatalogText(L"settings.body");
  const WindowDc dc(handle_);
  const Selected font(dc.Get(), bodyFont_.Get());
  RECT area{0, 0, UiLanguageDialogTextWidth(dpi_), 0};
  DrawTextW(dc.Get(), text.c_str(), -1, &area, DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX);
  return static_cast<int>(area.bottom);
}

void UiLanguageWindow::LayOut(const RECT& work) {
  MakeFonts();
  layout_ = LayOutUiLanguageDialog(dpi_, MeasureBody(), static_cast<int>(work.bottom - work.top));
  Place(title_, layout_.title, titleFont_.Get());
  Place(body_, layout_.body, bodyFont_.Get());
  SendMessageW(list_, LB_SETITEMHEIGHT, 0, layout_.rowHeight);
  Place(list_, layout_.list, listFont_.Get());
  Place(ok_, layout_.ok, bodyFont_.Get());
  Place(cancel_, layout_.cancel, bodyFont_.Get());
  ShowSelection();
}

/// Scrolls the selected row to the middle, so that its neighbours on both sides are seen.
void UiLanguageWindow::ShowSelection() {
  const auto row = static_cast<int>(SendMessageW(list_, LB_GETCURSEL, 0, 0));
  const int rowsAbove = layout_.list.height / layout_.rowHeight / 2;
  SendMessageW(list_, LB_SETTOPINDEX, static_cast<WPARAM>(std::max(0, row - rowsAbove)), 0);
}

void UiLanguageWindow::CenterOverOwner(const RECT& work) {
  RECT over = work;
  if (owner_ != nullptr && !IsIconic(owner_)) GetWindowRect(owner_, &over);
  MoveTo(Centered(over.left, over.right, layout_.width, work.left, work.right),
         Centered(over.top, over.bottom, layout_.height, work.top, work.bottom));
}

void UiLanguageWindow::MoveTo(int left, int top) {
  SetWindowPos(handle_, nullptr, left, top, layout_.width, layout_.height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void UiLanguageWindow::OnDpiChanged(int dpi, const RECT& suggested) {
  dpi_ = dpi;
  LayOut(WorkArea(handle_));
  // The system chose the place so that the dialog does not jump back to the screen that it comes from.
  MoveTo(static_cast<int>(suggested.left), static_cast<int>(suggested.top));
}

void UiLanguageWindow::RunMessages() {
  MSG message{};
  while (handle_ != nullptr) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      Close();
      // The host is ending: its own loop must see that too.
      if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    if (handle_ != nullptr && IsDialogMessageW(handle_, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void UiLanguageWindow::Close() {
  if (handle_ == nullptr) return;
  // First, or Windows would activate another program's window in place of a disabled owner.
  if (lock_ != nullptr) lock_->Enable();
  DestroyWindow(handle_);
}

LRESULT CALLBACK UiLanguageWindow::Procedure(HWND window, UINT message, WPARAM wparam,
                                             LPARAM lparam) noexcept {
  auto* const self = WindowOwner<UiLanguageWindow>(window, message, lparam);
  if (message == WM_NCCREATE) self->handle_ = window;
  std::optional<LRESULT> result;
  if (self != nullptr) {
    const HRESULT hr = GuardHr(L"UiLanguageWindow", [&] {
      result = self->OnMessage(message, wparam, lparam);
      return S_OK;
    });
    // An empty dialog that cannot be answered is worse than none.
    if (FAILED(hr) && message == WM_CREATE) return kCreationFailed;
  }
  return result ? *result : DefWindowProcW(window, message, wparam, lparam);
}

std::optional<LRESULT> UiLanguageWindow::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CREATE:
      return OnCreate() ? 0 : kCreationFailed;
    case WM_DPICHANGED:
      OnDpiChanged(HIWORD(wparam), *reinterpret_cast<const RECT*>(lparam));
      return 0;
    case WM_COMMAND:
      OnCommand(LOWORD(wparam), HIWORD(wparam));
      return 0;
    case DM_GETDEFID:
      // Enter on the cancel button cancels.
      return MAKELRESULT(GetFocus() == cancel_ ? IDCANCEL : IDOK, DC_HASDEFID);
    case WM_CLOSE:
      Close();
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wparam) == WA_INACTIVE && IsChild(handle_, GetFocus())) lastFocus_ = GetFocus();
      return std::nullopt;
    case WM_SETFOCUS:
      SetFocus(lastFocus_);
      return 0;
    case WM_NCHITTEST:
      return OnHitTest(lparam);
    case WM_PAINT:
      OnPaint();
      return 0;
    case WM_DRAWITEM:
      OnDrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lparam));
      return TRUE;
    case WM_ERASEBKGND:
      OnErase(reinterpret_cast<HDC>(wparam));
      return TRUE;
    case WM_CTLCOLORSTATIC:
      return OnStaticColors(reinterpret_cast<HDC>(wparam), reinterpret_cast<HWND>(lparam));
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
      OnColorsChanged();
      return std::nullopt;
    case WM_NCDESTROY:
      ForgetWindowOwner(handle_);
      handle_ = nullptr;
      // Destroyed with its owner, perhaps: the loop waits for a message.
      PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

bool UiLanguageWindow::OnCreate() {
  dpi_ = WindowDpi(handle_);
  ChooseColors();
  if (!CreateControls()) return false;
  const RECT work = WorkArea(handle_);
  LayOut(work);
  CenterOverOwner(work);
  RoundCorners(handle_);
  return true;
}

void UiLanguageWindow::OnCommand(int id, int notification) {
  if (id == IDOK || (id == kListId && notification == LBN_DBLCLK)) {
    OnOk();
  } else if (id == IDCANCEL) {
    Close();
  } else if (id == kListId && (notification == LBN_SETFOCUS || notification == LBN_KILLFOCUS)) {
    const RECT frame = AsRect(layout_.frame);
    InvalidateRect(handle_, &frame, FALSE);
  }
}

void UiLanguageWindow::OnOk() {
  const LRESULT row = SendMessageW(list_, LB_GETCURSEL, 0, 0);
  if (commit_(handle_, row == LB_ERR ? std::nullopt : std::optional(static_cast<int>(row)))) Close();
}

/// The user has switched to high contrast or back, perhaps.
void UiLanguageWindow::OnColorsChanged() {
  ChooseColors();
  RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void UiLanguageWindow::OnErase(HDC dc) const {
  RECT client{};
  GetClientRect(handle_, &client);
  FillRect(dc, &client, ground_.Get());
}

LRESULT UiLanguageWindow::OnStaticColors(HDC dc, HWND control) const {
  SetTextColor(dc, control == title_ ? colors_.title : colors_.body);
  SetBkMode(dc, TRANSPARENT);
  return reinterpret_cast<LRESULT>(ground_.Get());
}

void UiLanguageWindow::OnPaint() {
  PAINTSTRUCT paint{};
  const HDC dc = BeginPaint(handle_, &paint);
  RECT client{};
  GetClientRect(handle_, &client);
  DrawDialogBorder(dc, client, colors_);
  DrawListFrame(dc, AsRect(layout_.frame), dpi_, GetFocus() == list_, colors_);
  EndPaint(handle_, &paint);
}

void UiLanguageWindow::OnDrawItem(const DRAWITEMSTRUCT& item) const {
  if (item.hwndItem != list_) {
    DrawDialogButton(item, bodyFont_.Get(), dpi_, item.hwndItem == ok_, colors_);
  } else if (item.itemID < UiLanguages().size()) {
    DrawListRow(item, UiLanguages()[item.itemID], listFont_.Get(), dpi_, colors_);
  }
}

/// What stands above the list moves the dialog, which has no caption.
LRESULT UiLanguageWindow::OnHitTest(LPARAM position) const {
  POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
  ScreenToClient(handle_, &point);
  return point.y < layout_.frame.top ? HTCAPTION : HTCLIENT;
}

}  // namespace qv
