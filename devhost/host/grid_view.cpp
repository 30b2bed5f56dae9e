#include "host/grid_view.h"

#include <windowsx.h>

#include <algorithm>
#include <stdexcept>

#include "engines/common/com_guard.h"
#include "host/grid_paint.h"
#include "host/host_window_class.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvDevhostGrid";
/// Pixels at the default DPI.
constexpr int kStripHeight = 26;
/// Of the strip, in percent.
constexpr int kTabsShare = 60;

int Scaled(int pixels, int dpi) {
  return MulDiv(pixels, dpi, USER_DEFAULT_SCREEN_DPI);
}

HWND CreateBar(HWND parent, DWORD direction) {
  return CreateWindowExW(0, L"SCROLLBAR", nullptr, WS_CHILD | WS_VISIBLE | direction, 0, 0, 0, 0, parent,
                         nullptr, GetModuleHandleW(nullptr), nullptr);
}

}  // namespace

std::unique_ptr<GridView> GridView::Create(HWND parent, Engine& engine, int windowId) {
  const HINSTANCE module = RegisterHostClass(kClassName, Procedure);
  std::unique_ptr<GridView> view(new GridView(engine, windowId));
  view->window_ =
      CreateWindowExW(0, kClassName, nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0, 0,
                      0, 0, parent, nullptr, module, nullptr);
  if (view->window_ == nullptr) throw std::runtime_error("the grid's window cannot be created");
  SetWindowLongPtrW(view->window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(view.get()));
  view->verticalBar_ = CreateBar(view->window_, SBS_VERT);
  view->horizontalBar_ = CreateBar(view->window_, SBS_HORZ);
  view->Arrange();
  return view;
}

GridView::~GridView() {
  if (window_ != nullptr) DestroyWindow(window_);
}

SIZE GridView::ClientSize() const {
  RECT client{};
  GetClientRect(window_, &client);
  return {client.right, client.bottom};
}

RECT GridView::TabStrip() const {
  const SIZE size = ClientSize();
  return {0, size.cy - Scaled(kStripHeight, fonts_->Dpi()), size.cx * kTabsShare / 100, size.cy};
}

void GridView::Arrange() {
  const int dpi = DpiOf(window_);
  if (fonts_ == nullptr || fonts_->Dpi() != dpi) fonts_ = std::make_unique<FontCache>(dpi);
  const SIZE size = ClientSize();
  const RECT strip = TabStrip();
  const int bar = GetSystemMetricsForDpi(SM_CXVSCROLL, static_cast<UINT>(dpi));
  MoveWindow(verticalBar_, size.cx - bar, 0, bar, std::max(0L, strip.top), TRUE);
  MoveWindow(horizontalBar_, strip.right, strip.top, std::max(0L, size.cx - strip.right - bar),
             strip.bottom - strip.top, TRUE);
  if (size.cx > 0 && size.cy > 0) Read();
}

bool GridView::Refresh() {
  if (window_ == nullptr || engine_.Revision() == seenRevision_) return true;
  return !dragging_ && SUCCEEDED(GuardCom([&] { return Read(), S_OK; }));
}

void GridView::Show() {
  if (window_ != nullptr) Read();
}

void GridView::Read() {
  const SIZE client = ClientSize();
  const RECT strip = TabStrip();
  RECT bar{};
  GetWindowRect(verticalBar_, &bar);
  const SIZE size{client.cx - (bar.right - bar.left), strip.top};
  if (size.cx <= 0 || size.cy <= 0) return;
  const std::uint64_t revision = engine_.Revision();
  picture_ = ReadPicture(engine_, windowId_, size, fonts_->Dpi(), toldVisible_);
  if (const GridArea visible = picture_->FullyVisible(); visible != toldVisible_) {
    engine_.ShowArea(windowId_, visible);
    toldVisible_ = visible;
  }
  seenRevision_ = revision;
  const auto& selection = picture_->Main().grid.selection;
  if (!selection.empty() && selection.front() != Selection()) {
    // Somebody else has selected.
    anchor_ = {selection.front().firstRow, selection.front().firstColumn, 1, 1};
    target_ = selection.front();
  }
  const HDC dc = GetDC(window_);
  tabs_.Arrange(dc, *fonts_, picture_->Main().grid.sheets, picture_->Main().grid.activeSheet, strip);
  ReleaseDC(window_, dc);
  UpdateScrollBars();
  InvalidateRect(window_, nullptr, FALSE);
}

void GridView::UpdateScrollBars() {
  const GridSnapshot& grid = picture_->Main().grid;
  const auto set = [](HWND bar, int first, int position, int page, int last) {
    SCROLLINFO info{sizeof(info), SIF_RANGE | SIF_PAGE | SIF_POS, 0, 0, 0, 0, 0};
    info.nMin = first;
    info.nMax = std::max(last, position + page - 1);
    info.nPage = static_cast<UINT>(page);
    info.nPos = position;
    SetScrollInfo(bar, SB_CTL, &info, TRUE);
    // Without anything to scroll a bar loses its range; it stays, greyed.
    EnableScrollBar(bar, SB_CTL, info.nMax - first + 1 > page ? ESB_ENABLE_BOTH : ESB_DISABLE_BOTH);
  };
  set(verticalBar_, grid.frozenRows + 1, toldVisible_.firstRow, toldVisible_.rows, grid.usedRows);
  set(horizontalBar_, grid.frozenColumns + 1, toldVisible_.firstColumn, toldVisible_.columns,
      grid.usedColumns);
}

void GridView::Paint() {
  const BufferedPaint paint(window_);
  const HDC canvas = paint.Canvas();
  Fill(canvas, paint.Area(), theme::kBar);
  if (!picture_) return;
  for (const GridPane& pane : picture_->panes)
    PaintPane(canvas, *fonts_, pane);
  const RECT& main = picture_->Main().clip;
  PaintHeaders(canvas, *fonts_, picture_->panes, picture_->headers, {main.right, main.bottom});
  tabs_.Paint(canvas, *fonts_);
}

LRESULT CALLBACK GridView::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* view = reinterpret_cast<GridView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (view != nullptr && message == WM_NCDESTROY) {
    view->window_ = nullptr;
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  } else if (view != nullptr) {
    std::optional<LRESULT> result;
    // A refusal of the engine leaves everything as it was.
    const HRESULT outcome = GuardCom([&] { return result = view->Handle(message, wParam, lParam), S_OK; });
    if (FAILED(outcome)) return 0;
    if (result) return *result;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

std::optional<LRESULT> GridView::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  switch (message) {
    case WM_SIZE:
      return Arrange(), 0;
    case WM_DPICHANGED_AFTERPARENT:
      return Arrange(), 0;
    case WM_PAINT:
      return Paint(), 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_VSCROLL:
    case WM_HSCROLL:
      return OnScrollBar(message == WM_VSCROLL, LOWORD(wParam)), 0;
    case WM_MOUSEWHEEL:
      return OnWheel(GET_WHEEL_DELTA_WPARAM(wParam), (GET_KEYSTATE_WPARAM(wParam) & MK_SHIFT) != 0), 0;
    case WM_MOUSEHWHEEL:
      return OnWheel(-GET_WHEEL_DELTA_WPARAM(wParam), true), 0;
    case WM_LBUTTONDOWN:
      return OnPress(point, (wParam & MK_SHIFT) != 0), 0;
    case WM_MOUSEMOVE:
      return OnDrag(point), 0;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
      return OnRelease(), 0;
    case WM_KEYDOWN:
      return OnKey(static_cast<UINT>(wParam)), 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | DLGC_WANTTAB | DLGC_WANTCHARS;
    default:
      return std::nullopt;
  }
}

}  // namespace qv::devhost
