#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "../foundation/scratch_folder.h"
#include "addin_test.h"
#include "host/ribbon_objects.h"
#include "stored_width.h"

namespace qv {

inline constexpr wchar_t kDialogClass[] = L"QuorvantisUiLangDialog2";

// 0-based rows of the dialog's list.
inline constexpr int kEnglishRow = 2;
inline constexpr int kGermanRow = 7;
inline constexpr int kFrenchRow = 8;

/// The user's settings file, put back at the end.
class SettingsFile {
 public:
  static std::filesystem::path Path() { return StoredWidth::SettingsFile(); }
  static std::string Text() {
    std::ifstream file(Path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static void Write(const std::string& text) { std::ofstream(Path(), std::ios::binary) << text; }

  /// The settings with this language in place of any.
  static void WriteLanguage(const std::string& code) {
    Write(
        "{\n  \"serviceHost\": \"127.0.0.1\",\n  \"servicePort\": 9,\n  \"serviceScheme\": \"http\",\n  "
        "\"uiLang\": \"" +
        code + "\"\n}\n");
  }

 private:
  KeptFile kept_{Path().wstring()};
};

/// What a user does to the open dialog, one step at a time, from inside the dialog's own message loop. A
/// dialog that nobody closes is closed after the last step.
class DialogUser {
 public:
  using Step = std::function<void(HWND)>;

  explicit DialogUser(std::vector<Step> steps) : steps_(std::move(steps)) {
    g_user = this;
    timer_ = SetTimer(nullptr, 0, 20, &DialogUser::OnTimer);
  }
  DialogUser(const DialogUser&) = delete;
  DialogUser& operator=(const DialogUser&) = delete;
  ~DialogUser() {
    KillTimer(nullptr, timer_);
    g_user = nullptr;
    EXPECT_EQ(done_, steps_.size()) << "the dialog closed too early or did not open";
  }

  static HWND Dialog() {
    const HWND dialog = FindWindowW(kDialogClass, nullptr);
    return IsWindowVisible(dialog) ? dialog : nullptr;
  }

 private:
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) noexcept {
    const HWND dialog = Dialog();
    if (g_user == nullptr || dialog == nullptr || !IsWindowEnabled(dialog)) return;
    if (g_user->done_ == g_user->steps_.size()) {
      ADD_FAILURE() << "the dialog stayed open";
      SendMessageW(dialog, WM_CLOSE, 0, 0);
      return;
    }
    const std::size_t step = g_user->done_++;
    g_user->steps_[step](dialog);
  }

  static inline DialogUser* g_user = nullptr;

  std::vector<Step> steps_;
  std::size_t done_ = 0;
  UINT_PTR timer_ = 0;
};

inline HWND List(HWND dialog) {
  return FindWindowExW(dialog, nullptr, L"LISTBOX", nullptr);
}

inline DialogUser::Step Select(int row) {
  return [row](HWND dialog) { SendMessageW(List(dialog), LB_SETCURSEL, static_cast<WPARAM>(row), 0); };
}

inline DialogUser::Step Push(int button) {
  return [button](HWND dialog) { SendMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0); };
}

/// A key into whatever has the focus.
inline DialogUser::Step Key(WORD key) {
  return [key](HWND dialog) {
    const HWND focus = GetFocus();
    EXPECT_TRUE(IsChild(dialog, focus));
    PostMessageW(focus, WM_KEYDOWN, key, 1);
    PostMessageW(focus, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
  };
}

/// A host window with a pane to be and the ribbon whose button opens the dialog.
class LanguageDialog : public AddinTest {
 protected:
  void SetUp() override {
    SettingsFile::WriteLanguage("en");
    owner_ = CreateWindowExW(0, L"Static", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 50, 800, 600, nullptr,
                             nullptr, nullptr, nullptr);
    engine_.AddWorkbook(L"Book.xlsx");
  }

  void TearDown() override {
    if (IsWindow(owner_)) DestroyWindow(owner_);
    AddinTest::TearDown();
  }

  devhost::Ribbon& HostRibbon() {
    if (host_ == nullptr) {
      Connect();
      engine_.Host().givenHwnd = HandleToLong(owner_);
      HostRibbon().OnChanged([this] {
        ++invalidations_;
        if (onInvalidate_) onInvalidate_();
      });
    }
    return *host_->Session().TheRibbon();
  }

  void PressSettings() { HostRibbon().Press(*HostRibbon().Find(L"btnSettings"), nullptr); }

  /// The user presses the button and does the steps.
  void Choose(std::vector<DialogUser::Step> steps) {
    HostRibbon();
    const DialogUser user(std::move(steps));
    PressSettings();
    EXPECT_EQ(DialogUser::Dialog(), nullptr);
    EXPECT_TRUE(!IsWindow(owner_) || IsWindowEnabled(owner_));
  }

  SettingsFile settings_;
  HWND owner_ = nullptr;
  int invalidations_ = 0;
  std::function<void()> onInvalidate_;
};

}  // namespace qv
