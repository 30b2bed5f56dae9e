#include "host/open_box.h"

#include <algorithm>
#include <string_view>

namespace qv::devhost {
namespace {

constexpr std::wstring_view kDialogClass = L"#32770";
constexpr std::wstring_view kLanguageDialogClass = L"QuorvantisUiLangDialog2";

struct NamedButton {
  int id;
  const char* name;
};
// In the order in which leaving a box changes least.
constexpr NamedButton kButtons[] = {{IDCANCEL, "Cancel"}, {IDNO, "No"},         {IDABORT, "Abort"},
                                    {IDOK, "OK"},         {IDIGNORE, "Ignore"}, {IDRETRY, "Retry"},
                                    {IDYES, "Yes"},       {IDCLOSE, "Close"}};

struct NamedIcon {
  LPCWSTR resource;
  const char* name;
};
const NamedIcon kIcons[] = {{IDI_INFORMATION, "information"},
                            {IDI_WARNING, "warning"},
                            {IDI_ERROR, "error"},
                            {IDI_QUESTION, "question"}};

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  return {name, static_cast<std::size_t>(GetClassNameW(window, name, static_cast<int>(std::size(name))))};
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

std::vector<HWND> ChildrenOf(HWND box, std::wstring_view className) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    if (_wcsicmp(ClassOf(child).c_str(), className.data()) == 0 && IsWindowVisible(child))
      children.push_back(child);
  }
  return children;
}

std::string IconName(HWND label) {
  const auto icon = reinterpret_cast<HICON>(SendMessageW(label, STM_GETICON, 0, 0));
  for (const auto& entry : kIcons) {
    if (icon != nullptr && icon == LoadIconW(nullptr, entry.resource)) return entry.name;
  }
  return "none";
}

HWND ListOf(HWND box) {
  const auto lists = ChildrenOf(box, L"ListBox");
  return lists.empty() ? nullptr : lists.front();
}

void ReadList(HWND list, BoxContent& content) {
  content.selectedRow = static_cast<int>(SendMessageW(list, LB_GETCURSEL, 0, 0)) + 1;
  const LONG_PTR style = GetWindowLongPtrW(list, GWL_STYLE);
  const bool ownerDrawn = (style & (LBS_OWNERDRAWFIXED | LBS_OWNERDRAWVARIABLE)) != 0;
  if (ownerDrawn && (style & LBS_HASSTRINGS) == 0) return;
  const auto count = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    const auto row = static_cast<WPARAM>(i);
    std::wstring text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, row, 0)) + 1, L'\0');
    SendMessageW(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    content.rows.push_back(std::move(text));
  }
}

HWND ButtonOf(HWND box, int id) {
  for (const HWND button : ChildrenOf(box, L"Button")) {
    if (GetDlgCtrlID(button) == id) return button;
  }
  return nullptr;
}

}  // namespace

HWND FindOpenBox() {
  HWND found = nullptr;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM result) -> BOOL {
        const auto name = ClassOf(window);
        const bool isBox = name == kDialogClass || name == kLanguageDialogClass;
        if (!isBox || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
        *reinterpret_cast<HWND*>(result) = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

BoxContent ReadBox(HWND box) {
  BoxContent content;
  content.kind = ClassOf(box) == kLanguageDialogClass ? "languages" : "dialog";
  content.title = TextOf(box);
  content.icon = "none";
  for (const HWND label : ChildrenOf(box, L"Static")) {
    if ((GetWindowLongPtrW(label, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
      content.icon = IconName(label);
    } else if (const auto text = TextOf(label); text != content.title) {
      content.text = text;
    }
  }
  for (const HWND button : ChildrenOf(box, L"Button")) {
    const auto known = std::ranges::find(kButtons, GetDlgCtrlID(button), &NamedButton::id);
    if (known != std::end(kButtons)) content.buttons.emplace_back(known->name);
  }
  if (const HWND list = ListOf(box)) ReadList(list, content);
  return content;
}

bool PressBoxButton(HWND box, const std::string& button) {
  const auto known =
      std::ranges::find_if(kButtons, [&](const NamedButton& entry) { return button == entry.name; });
  const HWND window = known == std::end(kButtons) ? nullptr : ButtonOf(box, known->id);
  // Posted: the click may run a further box.
  return window != nullptr && PostMessageW(window, BM_CLICK, 0, 0);
}

bool SelectBoxRow(HWND box, int row) {
  const HWND list = ListOf(box);
  if (list == nullptr || SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(row - 1), 0) == LB_ERR)
    return false;
  const auto id = static_cast<WORD>(GetDlgCtrlID(list));
  PostMessageW(box, WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
  return true;
}

void DismissBox(HWND box) {
  for (const auto& button : kButtons) {
    if (PressBoxButton(box, button.name)) return;
  }
  PostMessageW(box, WM_CLOSE, 0, 0);
}

}  // namespace qv::devhost
