#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <utility>

#include "addin/disabled_windows.h"
#include "addin/ui_language_colors.h"
#include "addin/ui_language_dialog_layout.h"
#include "foundation/unique_gdi.h"

namespace qv {

/// The window of the language dialog: shows the languages, runs until the user has chosen. UI thread.
class UiLanguageWindow {
 public:
  /// The user pressed OK with the row (nothing when none is selected); `dialog` may own a box. True closes
  /// the dialog.
  using Commit = std::function<bool(HWND dialog, std::optional<int> row)>;

  /// `current` is the row that is selected at first; `rightToLeft` when the texts run that way.
  UiLanguageWindow(std::optional<int> current, bool rightToLeft, Commit commit)
      : current_(current), rightToLeft_(rightToLeft), commit_(std::move(commit)) {}
  UiLanguageWindow(const UiLanguageWindow&) = delete;
  UiLanguageWindow& operator=(const UiLanguageWindow&) = delete;
  ~UiLanguageWindow() { Close(); }

  /// Shows the dialog over its owner (may be null), and returns when it is closed; the thread's other windows
  /// take no input meanwhile. While one is open already, that one is shown instead.
  void RunModal(HWND owner);

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

  [[nodiscard]] bool Create(HWND owner);
  [[nodiscard]] bool CreateControls();
  HWND CreateControl(const wchar_t* className, const wchar_t* text, DWORD style, DWORD exStyle, int id);
  void FillList();
  void MakeFonts();
  void ChooseColors();
  /// Fits everything inside to `dpi_`; `work` is the screen area that there is room in.
  void LayOut(const RECT& work);
  void ShowSelection();
  void CenterOverOwner(const RECT& work);
  void MoveTo(int left, int top);
  [[nodiscard]] int MeasureBody() const;
  void RunMessages();
  void Close();

  /// The message's result; nothing when Windows' own handling is wanted.
  [[nodiscard]] std::optional<LRESULT> OnMessage(UINT message, WPARAM wparam, LPARAM lparam);
  [[nodiscard]] bool OnCreate();
  void OnDpiChanged(int dpi, const RECT& suggested);
  void OnCommand(int id, int notification);
  void OnColorsChanged();
  void OnErase(HDC dc) const;
  [[nodiscard]] LRESULT OnStaticColors(HDC dc, HWND control) const;
  void OnPaint();
  void OnDrawItem(const DRAWITEMSTRUCT& item) const;
  [[nodiscard]] LRESULT OnHitTest(LPARAM position) const;
  void OnOk();

  std::optional<int> current_;
  bool rightToLeft_;
  Commit commit_;

  HWND owner_ = nullptr;
  HWND handle_ = nullptr;
  HWND title_ = nullptr;
  HWND body_ = nullptr;
  HWND list_ = nullptr;
  HWND ok_ = nullptr;
  HWND cancel_ = nullptr;
  /// Control that gets the focus back when the dialog is activated again.
  HWND lastFocus_ = nullptr;
  DisabledWindows* lock_ = nullptr;
  int dpi_ = 0;
  UiLanguageColors colors_{};
  UniqueBrush ground_;
  UiLanguageDialogLayout layout_;
  UniqueFont titleFont_;
  UniqueFont bodyFont_;
  UniqueFont listFont_;
};

}  // namespace qv
