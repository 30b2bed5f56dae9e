#include "host/ribbon_bar.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>

#include "host/document_layout.h"
#include "host/host_window_class.h"
#include "host/picture.h"

namespace qv::devhost {
namespace {

constexpr wchar_t kClassName[] = L"QvDevhostRibbon";
// At 96 DPI.
constexpr int kTabIndent = 14;
constexpr int kTabUnderline = 3;
constexpr int kUnwrappedLabel = 44;
constexpr int kTipWidth = 320;

/// The size that a host draws large pictures at.
int LargeIcon(HostStyle style) {
  return style == HostStyle::kWps ? 48 : 32;
}

RECT Centred(const RECT& area, int top, int size) {
  const int left = (area.left + area.right - size) / 2;
  return {left, top, left + size, top + size};
}

}  // namespace

std::unique_ptr<RibbonBar> RibbonBar::Create(HWND parent, Ribbon& ribbon, HostStyle style, Press press) {
  const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES};
  InitCommonControlsEx(&controls);
  const HINSTANCE module = RegisterHostClass(kClassName, Procedure);
  std::unique_ptr<RibbonBar> bar(new RibbonBar(ribbon, style, std::move(press)));
  bar->window_ = CreateWindowExW(0, kClassName, L"Ribbon", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, 0, 0,
                                 0, parent, nullptr, module, nullptr);
  if (bar->window_ == nullptr) return nullptr;
  SetWindowLongPtrW(bar->window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(bar.get()));
  bar->tips_ =
      CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0,
                      0, 0, bar->window_, nullptr, module, nullptr);
  bar->Refresh();
  return bar;
}

RibbonBar::~RibbonBar() {
  if (window_ == nullptr) return;
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(tips_);
  DestroyWindow(window_);
}

void RibbonBar::Refresh() {
  const int dpi = DpiOf(window_);
  font_ = MakeUiFont(dpi);
  const HDC canvas = GetDC(window_);
  metrics_ = MakeRibbonMetrics(LargeIcon(style_), MeasureLine(canvas, L"Ag", font_.Get()).cy, dpi);
  ReleaseDC(window_, canvas);
  isStale_ = true;
  InvalidateRect(window_, nullptr, FALSE);
}

void RibbonBar::ReadTexts() {
  isStale_ = false;
  groups_.clear();
  if (ribbon_.Description().tabs.empty()) return;
  const RibbonItem& tab = ribbon_.Description().tabs.front();
  tabLabel_ = ribbon_.Label(tab);
  for (const auto& groupItem : tab.children) {
    Group group{ribbon_.Label(groupItem), {}, {}};
    for (const auto& item : groupItem.children) {
      group.buttons.push_back({&item,
                               ribbon_.Label(item),
                               {},
                               ribbon_.Screentip(item),
                               ribbon_.Image(item),
                               {},
                               GroupForm::kLarge});
    }
    groups_.push_back(std::move(group));
  }
}

void RibbonBar::Arrange() {
  if (isStale_) ReadTexts();
  const int dpi = DpiOf(window_);
  const HDC canvas = GetDC(window_);
  const auto measure = [&](std::wstring_view text) {
    return static_cast<int>(MeasureLine(canvas, text, font_.Get()).cx);
  };
  std::vector<GroupSize> sizes;
  for (auto& group : groups_) {
    GroupSize size{measure(group.caption), {}};
    for (auto& button : group.buttons) {
      button.lines = WrapLabel(button.label, Scaled(kUnwrappedLabel, dpi), measure);
      int width = metrics_.icon;
      for (const auto& line : button.lines)
        width = std::max(width, measure(line));
      size.buttons.push_back({button.item->isLarge, width + 2 * metrics_.padding,
                              metrics_.IconWidth() + measure(button.label) + metrics_.padding});
    }
    sizes.push_back(std::move(size));
  }
  ReleaseDC(window_, canvas);
  RECT area{};
  GetClientRect(window_, &area);
  const auto places = LayOutGroups(sizes, area.right, metrics_);
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    groups_[i].area = places[i].area;
    for (std::size_t j = 0; j < groups_[i].buttons.size(); ++j) {
      groups_[i].buttons[j].area = places[i].buttons[j];
      groups_[i].buttons[j].form = places[i].form;
    }
  }
  UpdateTips();
}

void RibbonBar::UpdateTips() {
  while (SendMessageW(tips_, TTM_GETTOOLCOUNT, 0, 0) > 0) {
    TOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    if (!SendMessageW(tips_, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool))) break;
    SendMessageW(tips_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
  SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, Scaled(kTipWidth, DpiOf(window_)));
  UINT_PTR id = 0;
  for (auto& group : groups_) {
    for (auto& button : group.buttons) {
      TOOLINFOW tool{};
      tool.cbSize = sizeof tool;
      tool.uFlags = TTF_SUBCLASS;
      tool.hwnd = window_;
      tool.uId = ++id;
      tool.rect = button.area;
      tool.lpszText = button.tip.empty() ? button.label.data() : button.tip.data();
      SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    }
  }
}

void RibbonBar::Paint() {
  if (isStale_) Arrange();
  const BufferedPaint paint(window_);
  const HDC canvas = paint.Canvas();
  Fill(canvas, paint.Area(), theme::kBar);
  PaintTab(canvas);
  for (const auto& group : groups_) {
    for (const auto& button : group.buttons)
      PaintButton(canvas, button);
    RECT caption = group.area;
    caption.top = caption.bottom - metrics_.caption;
    DrawLabel(canvas, group.caption, caption, font_.Get(), theme::kQuietText,
              DT_SINGLELINE | DT_CENTER | DT_TOP);
    Fill(canvas,
         {group.area.right - 1, group.area.top + metrics_.padding, group.area.right,
          group.area.bottom - metrics_.padding},
         theme::kLine);
  }
  RECT edge = paint.Area();
  edge.top = edge.bottom - 1;
  Fill(canvas, edge, theme::kLine);
}

void RibbonBar::PaintTab(HDC canvas) const {
  if (ribbon_.Description().tabs.empty()) return;
  const int dpi = DpiOf(window_);
  const int left = Scaled(kTabIndent, dpi);
  const int width = static_cast<int>(MeasureLine(canvas, tabLabel_, font_.Get()).cx);
  const RECT area{left, 0, left + width, metrics_.header - Scaled(kTabUnderline, dpi)};
  DrawLabel(canvas, tabLabel_, area, font_.Get(), theme::kAccent, DT_SINGLELINE | DT_VCENTER | DT_NOCLIP);
  Fill(canvas, {left, area.bottom - Scaled(kTabUnderline, dpi), left + width, area.bottom}, theme::kAccent);
}

void RibbonBar::PaintButton(HDC canvas, const Button& button) const {
  if (button.item == pressed_ && button.item == hot_) {
    Fill(canvas, button.area, theme::kPressed);
  } else if (button.item == hot_ && pressed_ == nullptr) {
    Fill(canvas, button.area, theme::kHover);
  }
  if (button.form == GroupForm::kLarge && button.item->isLarge) {
    PaintLarge(canvas, button);
  } else {
    PaintSmall(canvas, button);
  }
}

void RibbonBar::PaintLarge(HDC canvas, const Button& button) const {
  const int gap = metrics_.padding / 2;
  const RECT picture = Centred(button.area, button.area.top + gap, metrics_.icon);
  if (const HBITMAP bitmap = BitmapOf(button.picture.Get())) DrawBitmap(canvas, bitmap, picture);
  RECT line = button.area;
  line.top = picture.bottom + gap;
  for (const auto& text : button.lines) {
    line.bottom = line.top + metrics_.line;
    DrawLabel(canvas, text, line, font_.Get(), theme::kText, DT_SINGLELINE | DT_CENTER | DT_NOCLIP);
    line.top = line.bottom;
  }
}

void RibbonBar::PaintSmall(HDC canvas, const Button& button) const {
  const RECT& area = button.area;
  const int top = (area.top + area.bottom - metrics_.smallIcon) / 2;
  const int left = area.left + metrics_.padding;
  if (const HBITMAP bitmap = BitmapOf(button.picture.Get()))
    DrawBitmap(canvas, bitmap, {left, top, left + metrics_.smallIcon, top + metrics_.smallIcon});
  if (button.form == GroupForm::kIcons) return;
  RECT text = area;
  text.left += metrics_.IconWidth();
  DrawLabel(canvas, button.label, text, font_.Get(), theme::kText, DT_SINGLELINE | DT_VCENTER | DT_NOCLIP);
}

const RibbonItem* RibbonBar::HitTest(LPARAM position) const {
  const POINT point{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
  for (const auto& group : groups_) {
    for (const auto& button : group.buttons) {
      if (PtInRect(&button.area, point)) return button.item;
    }
  }
  return nullptr;
}

void RibbonBar::SetHot(const RibbonItem* item) {
  if (item == hot_) return;
  hot_ = item;
  TRACKMOUSEEVENT leave{sizeof leave, TME_LEAVE, window_, 0};
  if (item != nullptr) TrackMouseEvent(&leave);
  InvalidateRect(window_, nullptr, FALSE);
}

void RibbonBar::Release(const RibbonItem* item) {
  const RibbonItem* const pressed = std::exchange(pressed_, nullptr);
  ReleaseCapture();
  InvalidateRect(window_, nullptr, FALSE);
  // A copy: pressing may take the bar away.
  const auto press = press_;
  if (pressed != nullptr && pressed == item) press(*item);
}

LRESULT RibbonBar::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      return Paint(), 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      if (!isStale_) Arrange();
      InvalidateRect(window_, nullptr, FALSE);
      return 0;
    case WM_MOUSEMOVE:
      return SetHot(HitTest(lParam)), 0;
    case WM_MOUSELEAVE:
      return SetHot(nullptr), 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      pressed_ = HitTest(lParam);
      SetHot(pressed_);
      if (pressed_ != nullptr) SetCapture(window_);
      InvalidateRect(window_, nullptr, FALSE);
      return 0;
    case WM_LBUTTONUP:
      return Release(HitTest(lParam)), 0;
    default:
      return DefWindowProcW(window_, message, wParam, lParam);
  }
}

LRESULT CALLBACK RibbonBar::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  return HandleByOwner(&RibbonBar::Handle, window, message, wParam, lParam);
}

}  // namespace qv::devhost
