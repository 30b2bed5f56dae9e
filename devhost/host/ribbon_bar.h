#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engines/engine.h"
#include "host/drawing.h"
#include "host/ribbon.h"
#include "host/ribbon_layout.h"

namespace qv::devhost {

/// Shows a ribbon's first tab on top of a document window. UI thread.
class RibbonBar {
 public:
  using Press = std::function<void(const RibbonItem&)>;

  /// A child of `parent`, made without a size. The ribbon is borrowed. `press` is called when a button was
  /// clicked and may open boxes; the bar may be gone when it comes back. Null when there is no window.
  [[nodiscard]] static std::unique_ptr<RibbonBar> Create(HWND parent, Ribbon& ribbon, HostStyle style,
                                                         Press press);
  RibbonBar(const RibbonBar&) = delete;
  RibbonBar& operator=(const RibbonBar&) = delete;
  ~RibbonBar();

  [[nodiscard]] HWND Window() const { return window_; }
  /// In pixels at the window's resolution.
  [[nodiscard]] int Height() const { return metrics_.Height(); }
  /// Asks for texts and pictures again: they or the resolution have changed.
  void Refresh();

 private:
  struct Button {
    const RibbonItem* item;
    std::wstring label;
    std::vector<std::wstring> lines;
    std::wstring tip;
    ComPtr<IPicture> picture;
    RECT area;
    GroupForm form;
  };
  struct Group {
    std::wstring caption;
    RECT area;
    std::vector<Button> buttons;
  };

  RibbonBar(Ribbon& ribbon, HostStyle style, Press press)
      : ribbon_(ribbon), style_(style), press_(std::move(press)) {}
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void ReadTexts();
  void Arrange();
  void UpdateTips();
  void Paint();
  void PaintTab(HDC canvas) const;
  void PaintButton(HDC canvas, const Button& button) const;
  void PaintLarge(HDC canvas, const Button& button) const;
  void PaintSmall(HDC canvas, const Button& button) const;
  [[nodiscard]] const RibbonItem* HitTest(LPARAM position) const;
  void SetHot(const RibbonItem* item);
  void Release(const RibbonItem* item);

  Ribbon& ribbon_;
  HostStyle style_;
  Press press_;
  HWND window_ = nullptr;
  HWND tips_ = nullptr;
  UniqueFont font_;
  RibbonMetrics metrics_{};
  std::wstring tabLabel_;
  std::vector<Group> groups_;
  /// Texts and pictures must be asked for again before the next paint.
  bool isStale_ = true;
  const RibbonItem* hot_ = nullptr;
  const RibbonItem* pressed_ = nullptr;
};

}  // namespace qv::devhost
