#include "host/pane_frame.h"

#include <windowsx.h>

#include <algorithm>
#include <stdexcept>

#include "host/document_window.h"
#include "host/drawing.h"
#include "host/host_window_class.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvDevhostPane";
/// As Office opens a pane, in points.
constexpr SIZE kInitialPt{300, 150};
constexpr int kPointsPerInch = 72;
/// Room before the title at 96 DPI.
constexpr int kTitleIndent = 12;

/// The observer may replace itself, or let go of the pane.
void Tell(std::function<void()> observer) {
  if (observer) observer();
}

}  // namespace

PaneFrame::PaneFrame(const std::wstring& progId, const std::wstring& title, bool visible,
                     DocumentWindow& document, CallLog& log)
    : title_(title),
      document_(&document),
      isVisible_(visible),
      width_(MulDiv(kInitialPt.cx, DpiOf(document.Window()), kPointsPerInch)),
      height_(MulDiv(kInitialPt.cy, DpiOf(document.Window()), kPointsPerInch)) {
  CreateWindows();
  document.Add(*this);
  try {
    container_ = std::make_unique<ControlContainer>(progId, content_, log);
  } catch (...) {
    Close();
    throw;
  }
}

void PaneFrame::CreateWindows() {
  const HINSTANCE module = RegisterHostClass(kClassName, Procedure);
  window_ = CreateWindowExW(0, kClassName, title_.c_str(), WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0, 0,
                            0, 0, document_->Window(), nullptr, module, nullptr);
  if (window_ == nullptr) throw std::runtime_error("the task-pane window cannot be created");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  content_ = CreateWindowExW(0, L"Static", L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 0, 0, window_,
                             nullptr, module, nullptr);
}

PaneFrame::~PaneFrame() {
  Close();
}

void PaneFrame::SetVisible(bool visible) {
  if (window_ == nullptr || isVisible_ == visible) return;
  isVisible_ = visible;
  document_->LayOut();
  Tell(onVisible_);
}

void PaneFrame::SetDock(PaneDock dock) {
  if (window_ == nullptr || dock_ == dock) return;
  dock_ = dock;
  document_->LayOut();
  Tell(onDock_);
}

SIZE PaneFrame::ContentSize() const {
  RECT area{};
  if (content_ != nullptr) GetClientRect(content_, &area);
  return {area.right, area.bottom};
}

int PaneFrame::WidthPt() const {
  if (!HasOwnWidth(dock_)) return 0;
  return MulDiv(ContentSize().cx, kPointsPerInch, DpiOf(window_));
}

int PaneFrame::HeightPt() const {
  return MulDiv(ContentSize().cy, kPointsPerInch, DpiOf(window_));
}

bool PaneFrame::SetWidthPt(int points) {
  if (window_ == nullptr || points <= 0 || !HasOwnWidth(dock_)) return false;
  width_ = MulDiv(points, DpiOf(window_), kPointsPerInch);
  document_->LayOut();
  return true;
}

bool PaneFrame::SetHeightPt(int points) {
  if (window_ == nullptr || points <= 0 || HasOwnWidth(dock_)) return false;
  height_ = MulDiv(points, DpiOf(window_), kPointsPerInch);
  document_->LayOut();
  return true;
}

void PaneFrame::Place(const RECT& outer) {
  if (window_ == nullptr) return;
  const bool isFloating = dock_ == PaneDock::kFloating;
  SetWindowPos(window_, isFloating ? HWND_TOP : nullptr, outer.left, outer.top, outer.right - outer.left,
               outer.bottom - outer.top, SWP_NOACTIVATE | (isFloating ? 0u : SWP_NOZORDER));
  Arrange();
  ShowWindow(window_, isVisible_ ? SW_SHOWNA : SW_HIDE);
}

PaneLayout PaneFrame::Parts() const {
  RECT area{};
  GetClientRect(window_, &area);
  return LayOutPane({area.right, area.bottom}, dock_, DpiOf(window_));
}

void PaneFrame::Arrange() {
  const RECT content = Parts().content;
  const SIZE before = ContentSize();
  MoveWindow(content_, content.left, content.top, content.right - content.left, content.bottom - content.top,
             TRUE);
  InvalidateRect(window_, nullptr, FALSE);
  const SIZE after = ContentSize();
  if (container_ && (after.cx != before.cx || after.cy != before.cy)) container_->Resize();
}

void PaneFrame::Close() {
  if (const HWND window = Leave()) DestroyWindow(window);
}

HWND PaneFrame::Leave() {
  // Taken first: closing dispatches messages, and another close may come with them.
  if (const auto container = std::move(container_)) leaks_ = container->Close();
  if (window_ == nullptr) return nullptr;
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  content_ = nullptr;
  const HWND window = std::exchange(window_, nullptr);
  std::exchange(document_, nullptr)->Remove(*this);
  return window;
}

void PaneFrame::Paint() {
  const BufferedPaint paint(window_);
  const PaneLayout parts = Parts();
  const int dpi = DpiOf(window_);
  Fill(paint.Canvas(), paint.Area(), theme::kSurface);
  Fill(paint.Canvas(), parts.splitter, theme::kBar);
  RECT edge = parts.splitter;
  edge.right = edge.left + 1;
  Fill(paint.Canvas(), edge, theme::kLine);
  RECT title = parts.caption;
  title.left += Scaled(kTitleIndent, dpi);
  title.right = parts.close.left;
  DrawLabel(paint.Canvas(), title_, title, MakeUiFont(dpi, true).Get(), theme::kText,
            DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS);
  if (isCloseHot_) Fill(paint.Canvas(), parts.close, theme::kHover);
  DrawCross(paint.Canvas(), parts.close, dpi, theme::kQuietText);
}

bool PaneFrame::IsHit(LPARAM position, RECT PaneLayout::*part) const {
  const PaneLayout parts = Parts();
  return PtInRect(&(parts.*part), {GET_X_LPARAM(position), GET_Y_LPARAM(position)}) != FALSE;
}

int PaneFrame::WidthAt(int x) const {
  RECT area{};
  GetClientRect(window_, &area);
  return dock_ == PaneDock::kRight ? area.right - x : x;
}

void PaneFrame::Drag(int x) {
  width_ = std::clamp(WidthAt(x) + grab_, 1, static_cast<int>(document_->ClientSize().cx / 2));
  document_->LayOut();
}

bool PaneFrame::DragWidthPt(int points) {
  if (window_ == nullptr || !isVisible_ || !HasOwnWidth(dock_)) return false;
  const auto at = [this](int x) { return MAKELPARAM(x, ContentSize().cy / 2); };
  const RECT splitter = Parts().splitter;
  const int start = (splitter.left + splitter.right) / 2;
  SendMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, at(start));
  const int by = MulDiv(points, DpiOf(window_), kPointsPerInch) - static_cast<int>(ContentSize().cx);
  const int end = dock_ == PaneDock::kRight ? start - by : start + by;
  SendMessageW(window_, WM_MOUSEMOVE, MK_LBUTTON, at(end));
  SendMessageW(window_, WM_LBUTTONUP, 0, at(end));
  return true;
}

void PaneFrame::Hover(bool close) {
  if (close == isCloseHot_) return;
  isCloseHot_ = close;
  InvalidateRect(window_, nullptr, FALSE);
  TRACKMOUSEEVENT leave{sizeof leave, TME_LEAVE, window_, 0};
  if (close) TrackMouseEvent(&leave);
}

LRESULT PaneFrame::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      return Paint(), 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SETCURSOR: {
      POINT point{};
      GetCursorPos(&point);
      ScreenToClient(window_, &point);
      if (!IsHit(MAKELPARAM(point.x, point.y), &PaneLayout::splitter)) break;
      SetCursor(LoadCursorW(nullptr, IDC_SIZEWE));
      return TRUE;
    }
    case WM_LBUTTONDOWN:
      isDragging_ = IsHit(lParam, &PaneLayout::splitter);
      grab_ = static_cast<int>(ContentSize().cx) - WidthAt(GET_X_LPARAM(lParam));
      if (isDragging_) SetCapture(window_);
      return 0;
    case WM_MOUSEMOVE:
      if (isDragging_) Drag(GET_X_LPARAM(lParam));
      Hover(!isDragging_ && IsHit(lParam, &PaneLayout::close));
      return 0;
    case WM_MOUSELEAVE:
      return Hover(false), 0;
    case WM_LBUTTONUP:
      if (isDragging_) {
        ReleaseCapture();
      } else if (IsHit(lParam, &PaneLayout::close)) {
        SetVisible(false);
      }
      return 0;
    case WM_CAPTURECHANGED:
      isDragging_ = false;
      return 0;
    case WM_DESTROY:
      // The document window goes first.
      return static_cast<void>(Leave()), 0;
    default:
      break;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

LRESULT CALLBACK PaneFrame::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return HandleByOwner(&PaneFrame::Handle, window, message, wParam, lParam);
}

}  // namespace qv::devhost
