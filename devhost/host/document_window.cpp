#include "host/document_window.h"

#include <algorithm>
#include <stdexcept>

#include "host/host_window_class.h"
#include "host/pane_frame.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvDevhostDocument";
constexpr wchar_t kHostName[] = L"Quorvantis Development Host";
constexpr SIZE kInitialSize{1280, 800};
/// Wide enough for every width that a pane may be given in a test.
constexpr SIZE kHiddenSize{4800, 1000};

}  // namespace

DocumentWindow::DocumentWindow(const DocumentSurroundings& surroundings, int id)
    : surroundings_(surroundings), id_(id) {
  const HINSTANCE module = RegisterHostClass(kClassName, Procedure);
  const HWND frame = surroundings.frame;
  const SIZE size = surroundings.isShown ? kInitialSize : kHiddenSize;
  RECT area{0, 0, size.cx, size.cy};
  if (frame != nullptr && surroundings.isShown) GetClientRect(frame, &area);
  // Only a window with a border is kept within the screen.
  const DWORD topStyle = surroundings.isShown ? WS_OVERLAPPEDWINDOW : WS_POPUP;
  const DWORD style = (frame ? WS_CHILD | WS_CLIPSIBLINGS : topStyle) | WS_CLIPCHILDREN;
  window_ = CreateWindowExW(0, kClassName, kHostName, style, frame ? 0 : CW_USEDEFAULT, 0, area.right,
                            area.bottom, frame, nullptr, module, nullptr);
  if (window_ == nullptr) throw std::runtime_error("the document window cannot be created");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  if (surroundings.isShown && id != 0) grid_ = GridView::Create(window_, surroundings.engine, id);
  UpdateRibbon();
}

DocumentWindow::~DocumentWindow() {
  ClosePanes();
  ribbonBar_.reset();
  grid_.reset();
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

SIZE DocumentWindow::ClientSize() const {
  RECT area{};
  GetClientRect(window_, &area);
  return {area.right, area.bottom};
}

void DocumentWindow::SetCaption(const std::wstring& document) {
  const std::wstring caption = document.empty() ? kHostName : document + L" \u2013 " + kHostName;
  if (caption == caption_) return;
  caption_ = caption;
  SetWindowTextW(window_, caption.c_str());
}

void DocumentWindow::SetVisible(bool visible) {
  ShowWindow(window_, visible && surroundings_.isShown ? SW_SHOW : SW_HIDE);
}

void DocumentWindow::Add(PaneFrame& pane) {
  panes_.push_back(&pane);
  LayOut();
}

void DocumentWindow::Remove(PaneFrame& pane) {
  std::erase(panes_, &pane);
  LayOut();
}

void DocumentWindow::ClosePanes() {
  // Each leaves the list by itself.
  while (!panes_.empty())
    panes_.back()->Close();
}

void DocumentWindow::LayOut() {
  std::vector<PaneWish> wishes;
  for (const auto* pane : panes_)
    wishes.push_back(pane->Wish());
  const SIZE client = ClientSize();
  const auto layout = LayOutDocument(client, ribbonBar_ ? ribbonBar_->Height() : 0, DpiOf(window_), wishes);
  const auto place = [](HWND window, const RECT& area) {
    MoveWindow(window, area.left, area.top, area.right - area.left, area.bottom - area.top, TRUE);
  };
  if (ribbonBar_) place(ribbonBar_->Window(), layout.ribbon);
  if (grid_) place(grid_->Window(), layout.grid);
  // A copy: placing runs code of the panes' controls.
  const auto panes = panes_;
  for (std::size_t i = 0; i < panes.size(); ++i) {
    if (std::ranges::find(panes_, panes[i]) != panes_.end()) panes[i]->Place(layout.panes[i]);
  }
  InvalidateRect(window_, nullptr, FALSE);
}

void DocumentWindow::UpdateRibbon() {
  if (surroundings_.ribbon == nullptr) {
    ribbonBar_.reset();
  } else if (ribbonBar_) {
    ribbonBar_->Refresh();
  } else if (surroundings_.isShown) {
    ribbonBar_ = RibbonBar::Create(window_, *surroundings_.ribbon, surroundings_.style,
                                   [&surroundings = surroundings_, id = id_](const RibbonItem& item) {
                                     surroundings.onPress(item, id);
                                   });
    LayOut();
  }
}

bool DocumentWindow::RefreshGrid() {
  return !grid_ || grid_->Refresh();
}

void DocumentWindow::Paint() {
  // Nothing of it is seen once every part is there; the window without a document has an empty middle.
  PAINTSTRUCT paint{};
  const HDC canvas = BeginPaint(window_, &paint);
  Fill(canvas, paint.rcPaint, id_ == 0 ? theme::kHover : theme::kSurface);
  EndPaint(window_, &paint);
}

LRESULT DocumentWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      return Paint(), 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) LayOut();
      return 0;
    case WM_DPICHANGED: {
      const auto& area = *reinterpret_cast<const RECT*>(lParam);
      UpdateRibbon();
      MoveWindow(window_, area.left, area.top, area.right - area.left, area.bottom - area.top, TRUE);
      return LayOut(), 0;
    }
    case WM_ACTIVATE:
      if (LOWORD(wParam) != WA_INACTIVE && id_ != 0) surroundings_.onActivated(id_);
      break;
    case WM_CLOSE:
      return surroundings_.onClose(id_), 0;
    default:
      break;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

LRESULT CALLBACK DocumentWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return HandleByOwner(&DocumentWindow::Handle, window, message, wParam, lParam);
}

}  // namespace qv::devhost
