#include "host/document_windows.h"

#include <algorithm>
#include <stdexcept>

#include "engines/common/com_guard.h"
#include "foundation/flag_scope.h"
#include "foundation/text.h"
#include "host/late_bound.h"

namespace qv::devhost {

DocumentWindows::DocumentWindows(Engine& engine, Look look)
    : surroundings_{engine, look.style, look.isShown, nullptr, nullptr, {}, {}, {}} {
  surroundings_.onPress = [this](const RibbonItem& item, int id) {
    surroundings_.ribbon->Press(item, id == 0 ? nullptr : surroundings_.engine.WindowObject(id));
  };
  surroundings_.onActivated = [this](int id) {
    if (id != active_) Activate(id);
  };
  surroundings_.onClose = [this](int id) { OnUserClosed(id); };
  if (look.style == HostStyle::kWps) {
    frame_ = std::make_unique<DocumentFrame>(look.isShown, [this] { isClosedByUser_ = true; });
    surroundings_.frame = frame_->Window();
  }
  Sync();
}

DocumentWindows::~DocumentWindows() {
  isSyncing_ = true;
  // The spreadsheet may have ended before.
  static_cast<void>(GuardCom([this] {
    for (const auto& info : surroundings_.engine.Windows())
      surroundings_.engine.SetWindowHandle(info.id, nullptr);
    surroundings_.engine.SetApplicationHandle(nullptr);
    return S_OK;
  }));
}

void DocumentWindows::Sync() {
  // Closing a pane dispatches messages, which may come back here.
  if (isSyncing_) return;
  std::vector<WindowInfo> infos;
  {
    const FlagScope syncing(isSyncing_);
    infos = surroundings_.engine.Windows();
    CloseMissing(infos);
    for (const auto& info : infos)
      Update(info);
  }
  ShowActive(infos);
}

void DocumentWindows::CloseMissing(const std::vector<WindowInfo>& infos) {
  std::vector<std::unique_ptr<DocumentWindow>> gone;
  for (auto& window : windows_) {
    const bool isOpen =
        std::ranges::any_of(infos, [&](const WindowInfo& info) { return info.id == window->Id(); });
    if (!isOpen) gone.push_back(std::move(window));
  }
  std::erase(windows_, nullptr);
}

void DocumentWindows::Update(const WindowInfo& info) {
  auto* window = Find(info.id);
  if (window == nullptr) {
    auto made = std::make_unique<DocumentWindow>(surroundings_, info.id);
    surroundings_.engine.SetWindowHandle(info.id, made->Window());
    window = made.get();
    windows_.push_back(std::move(made));
  }
  window->SetCaption(info.caption);
}

void DocumentWindows::ShowActive(const std::vector<WindowInfo>& infos) {
  DocumentWindow& active = ActiveOf(infos);
  const HWND top = surroundings_.frame ? surroundings_.frame : active.Window();
  const bool hasChanged = active_ != active.Id();
  active_ = active.Id();
  if (empty_ && active_ != 0) empty_->SetVisible(false);
  for (const auto& window : windows_)
    window->SetVisible(surroundings_.frame == nullptr || window->Id() == active_);
  active.SetVisible(true);
  if (hasChanged && surroundings_.isShown) SetForegroundWindow(top);
  if (toldHandle_ == top) return;
  surroundings_.engine.SetApplicationHandle(top);
  toldHandle_ = top;
}

bool DocumentWindows::Refresh() {
  const std::uint64_t revision = surroundings_.engine.Revision();
  if (revision == shownRevision_) return true;
  Sync();
  bool allShown = true;
  for (const auto& window : windows_)
    allShown = window->RefreshGrid() && allShown;
  if (allShown) shownRevision_ = revision;
  return allShown;
}

void DocumentWindows::Repaint() {
  for (const auto& window : windows_)
    RedrawWindow(window->Window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

DocumentWindow& DocumentWindows::Empty() {
  if (!empty_) {
    empty_ = std::make_unique<DocumentWindow>(surroundings_, 0);
    empty_->SetCaption(L"");
  }
  return *empty_;
}

DocumentWindow& DocumentWindows::Active() {
  return windows_.empty() ? Empty() : ActiveOf(surroundings_.engine.Windows());
}

DocumentWindow& DocumentWindows::ActiveOf(const std::vector<WindowInfo>& infos) {
  if (windows_.empty()) return Empty();
  for (const auto& info : infos) {
    if (auto* window = info.active ? Find(info.id) : nullptr) return *window;
  }
  return *windows_.back();
}

DocumentWindow* DocumentWindows::Find(int id) {
  const auto found = std::ranges::find_if(windows_, [id](const auto& window) { return window->Id() == id; });
  return found == windows_.end() ? nullptr : found->get();
}

DocumentWindow* DocumentWindows::FindFor(IDispatch* window) {
  const auto handle = GetNumberProperty(window, L"Hwnd");
  if (!handle) return nullptr;
  // Window handles have 32 significant bits, whatever the size of the type.
  const auto found = std::ranges::find_if(windows_, [&](const auto& candidate) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(candidate->Window())) ==
           static_cast<std::uint32_t>(*handle);
  });
  return found == windows_.end() ? nullptr : found->get();
}

HWND DocumentWindows::TopWindow() {
  return surroundings_.frame ? surroundings_.frame : Active().Window();
}

void DocumentWindows::Activate(int id) {
  surroundings_.engine.ActivateWindow(id);
  Sync();
}

void DocumentWindows::Close(int id) {
  const auto infos = surroundings_.engine.Windows();
  const auto closing = std::ranges::find(infos, id, &WindowInfo::id);
  const bool isLast =
      closing != infos.end() && std::ranges::count(infos, closing->workbook, &WindowInfo::workbook) == 1;
  if (isLast) surroundings_.engine.AnnounceClose(id);
  CloseAnnounced(id);
  Sync();
}

void DocumentWindows::CloseWorkbook(const std::wstring& name) {
  const auto infos = surroundings_.engine.Windows();
  const auto named = std::ranges::find_if(infos, [&](const WindowInfo& info) {
    return name.empty() ? info.active : EqualsIgnoreAsciiCase(info.workbook, name);
  });
  std::vector<int> closing;
  for (const auto& info : infos) {
    if (named != infos.end() && info.workbook == named->workbook) closing.push_back(info.id);
  }
  if (closing.empty()) throw std::runtime_error("no such workbook: " + ToUtf8(name));
  surroundings_.engine.AnnounceClose(closing.front());
  for (const int id : closing)
    CloseAnnounced(id);
  Sync();
}

void DocumentWindows::CloseAnnounced(int id) {
  if (auto* window = Find(id)) window->ClosePanes();
  surroundings_.engine.CloseWindow(id);
}

void DocumentWindows::OnUserClosed(int id) {
  if (windows_.size() <= 1) {
    isClosedByUser_ = true;
  } else {
    Close(id);
  }
}

void DocumentWindows::SetRibbon(Ribbon* ribbon) {
  surroundings_.ribbon = ribbon;
  for (const auto& window : windows_)
    window->UpdateRibbon();
  if (empty_) empty_->UpdateRibbon();
}

}  // namespace qv::devhost
