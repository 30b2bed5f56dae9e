#pragma once

#include <windows.h>

#include "foundation/module.h"
#include "foundation/unique_handle.h"

namespace qv {

struct GlobalTraits {
  using Type = HGLOBAL;
  static Type None() { return nullptr; }
  static void Close(Type handle) { GlobalFree(handle); }
};
/// Memory as the clipboard wants it.
using UniqueGlobal = UniqueHandle<GlobalTraits>;

/// A window that nobody sees, to own what is put on the clipboard: without an owner nothing can be put there,
/// and a window of the host would get the clipboard's messages. The content outlives its owner.
class ClipboardOwner {
 public:
  ClipboardOwner()
      : window_(CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, ThisModule(),
                                nullptr)) {}
  ClipboardOwner(const ClipboardOwner&) = delete;
  ClipboardOwner& operator=(const ClipboardOwner&) = delete;
  ~ClipboardOwner() {
    if (window_ != nullptr) DestroyWindow(window_);
  }
  /// Null when there is no window to be had.
  [[nodiscard]] HWND Get() const { return window_; }

 private:
  HWND window_;
};

/// The clipboard, open for its lifetime; false while another program holds it. On the owner's thread.
class OpenedClipboard {
 public:
  /// A program that looks at what is new holds the clipboard for a moment only: asks again for `patience`
  /// milliseconds. Messages that other threads send are handled meanwhile, as whoever holds the clipboard may
  /// be waiting for this thread to deliver what it has promised.
  explicit OpenedClipboard(HWND owner, DWORD patience = 0);
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;
  ~OpenedClipboard() {
    if (open_) CloseClipboard();
  }
  [[nodiscard]] explicit operator bool() const { return open_; }

 private:
  bool open_;
};

}  // namespace qv
