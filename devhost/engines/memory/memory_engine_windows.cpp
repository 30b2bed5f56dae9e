#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "engines/memory/grid_of_window.h"
#include "engines/memory/host_events.h"
#include "engines/memory/memory_engine.h"
#include "engines/memory/window_object.h"
#include "engines/memory/workbook_json.h"
#include "foundation/text.h"

namespace qv::devhost {
namespace {

using nlohmann::json;

using OpenedFiles = std::vector<std::pair<std::wstring, std::weak_ptr<memory::Workbook>>>;

/// The workbook that is open from the file, or null.
std::shared_ptr<memory::Workbook> FindOpenFile(const OpenedFiles& files, const std::wstring& path) {
  for (const auto& [opened, book] : files) {
    const auto workbook = book.lock();
    std::error_code ignored;
    const bool isOpen = workbook != nullptr && !workbook->closed;
    if (isOpen && std::filesystem::equivalent(opened, path, ignored)) return workbook;
  }
  return nullptr;
}

/// A window handle as the model keeps it; the significant part of one has 32 bits.
long NumberOf(HWND window) {
  return static_cast<long>(reinterpret_cast<INT_PTR>(window));
}

memory::Area CellsOf(const GridArea& area) {
  const memory::Area cells{area.firstRow, area.firstColumn, area.firstRow + area.rows - 1,
                           area.firstColumn + area.columns - 1};
  if (area.rows < 1 || area.columns < 1 || !memory::kWholeSheet.Contains(cells)) {
    throw std::runtime_error("no such cells");
  }
  return cells;
}

}  // namespace

void MemoryEngine::SetApplicationHandle(HWND window) {
  host_->givenHwnd = NumberOf(window);
}

std::shared_ptr<memory::Window> MemoryEngine::FindWindow(int id) const {
  for (const auto& window : host_->windows) {
    if (window->id == id) return window;
  }
  throw std::runtime_error("no such window: " + std::to_string(id));
}

std::vector<WindowInfo> MemoryEngine::Windows() {
  std::vector<WindowInfo> windows;
  for (const auto& window : host_->windows) {
    const auto workbook = window->workbook.lock();
    windows.push_back({window->id, host_->CaptionOf(*window), workbook == nullptr ? L"" : workbook->name,
                       window == host_->ActiveWindow()});
  }
  std::ranges::sort(windows, {}, &WindowInfo::id);
  return windows;
}

int MemoryEngine::OpenWindow(const std::wstring& path) {
  if (const auto open = FindOpenFile(openedFiles_, path)) {
    const auto window = memory::FrontWindowOf(*host_, *open->sheets.front());
    ActivateWindow(window);
    return window->id;
  }
  const std::filesystem::path file(path);
  std::ifstream input(file, std::ios::binary);
  if (!input) throw std::runtime_error("cannot open " + ToUtf8(path));
  json description;
  try {
    description = json::parse(input);
  } catch (const json::exception& error) {
    throw std::runtime_error("not a workbook description: " + ToUtf8(path) + ": " + error.what());
  }
  auto sheets = memory::SheetsFromJson(description);
  const auto workbook =
      host_->AddWorkbook(file.filename().wstring(), file.parent_path().wstring(), std::move(sheets));
  workbook->readOnly = description.value("readOnly", false);
  if (description.contains("active")) {
    const auto active = workbook->FindSheet(FromUtf8(description.value("active", std::string())));
    if (active != nullptr && active->visible == -1) workbook->windows.front()->activeSheet = active;
  }
  openedFiles_.emplace_back(path, workbook);
  Changed();
  memory::FireWorkbookEvent(host_, AppEvent::kWorkbookOpen, workbook);
  const auto window = workbook->windows.front();
  memory::FireWindowEvent(host_, AppEvent::kWindowActivate, window);
  return window->id;
}

int MemoryEngine::NewWindow() {
  const auto workbook = host_->ActiveWorkbook();
  if (workbook == nullptr) throw std::runtime_error("no workbook is open");
  const auto before = host_->ActiveWindow();
  const auto window = AddWindow(workbook);
  memory::FireWindowEvent(host_, AppEvent::kWindowDeactivate, before);
  memory::FireWindowEvent(host_, AppEvent::kWindowActivate, window);
  return window->id;
}

void MemoryEngine::ActivateWindow(int window) {
  ActivateWindow(FindWindow(window));
}

void MemoryEngine::AnnounceClose(int window) {
  if (memory::FireBeforeClose(host_, FindWindow(window)->workbook.lock()))
    throw std::runtime_error("an add-in does not let the workbook close");
}

void MemoryEngine::CloseWindow(int window) {
  const auto closing = FindWindow(window);
  const auto workbook = closing->workbook.lock();
  const bool wasActive = host_->ActiveWindow() == closing;
  if (wasActive) {
    memory::FireWindowEvent(host_, AppEvent::kWindowDeactivate, closing);
    if (workbook->windows.size() == 1)
      memory::FireWorkbookEvent(host_, AppEvent::kWorkbookDeactivate, workbook);
  }
  CloseWindow(closing);
  const auto next = wasActive ? host_->ActiveWindow() : nullptr;
  if (next == nullptr) return;
  if (next->workbook.lock() != workbook)
    memory::FireWorkbookEvent(host_, AppEvent::kWorkbookActivate, next->workbook.lock());
  memory::FireWindowEvent(host_, AppEvent::kWindowActivate, next);
}

ComPtr<IDispatch> MemoryEngine::WindowObject(int window) {
  return WindowObject(FindWindow(window));
}

void MemoryEngine::SetWindowHandle(int window, HWND handle) {
  FindWindow(window)->givenHwnd = NumberOf(handle);
}

GridSnapshot MemoryEngine::Grid(int window, const GridArea& area) {
  return memory::GridOf(*FindWindow(window), area);
}

void MemoryEngine::ActivateSheet(int window, const std::wstring& sheet) {
  const auto shown = FindWindow(window);
  const auto found = shown->workbook.lock()->FindSheet(sheet);
  if (found == nullptr || found->visible != -1) throw std::runtime_error("no such sheet: " + ToUtf8(sheet));
  ActivateWindow(shown);
  memory::ActivateSheet(host_, found);
}

void MemoryEngine::SelectCells(int window, const GridArea& area) {
  const auto shown = FindWindow(window);
  const memory::Area cells = CellsOf(area);
  ActivateWindow(shown);
  memory::SelectAreas(host_, shown->activeSheet, {cells});
}

void MemoryEngine::ShowArea(int window, const GridArea& visible) {
  const auto shown = FindWindow(window);
  const memory::Area cells = CellsOf(visible);
  memory::SheetView& view = shown->ViewOf(*shown->activeSheet);
  view.scrollRow = cells.row1;
  view.scrollColumn = cells.col1;
  shown->visibleRows = cells.Rows();
  shown->visibleColumns = cells.Columns();
}

std::shared_ptr<memory::Window> MemoryEngine::AddWindow(const std::shared_ptr<memory::Workbook>& workbook) {
  Changed();
  return host_->AddWindow(workbook);
}

void MemoryEngine::CloseWindow(const std::shared_ptr<memory::Window>& window) {
  Changed();
  host_->CloseWindow(window);
}

void MemoryEngine::CloseWorkbook(const std::shared_ptr<memory::Workbook>& workbook) {
  Changed();
  host_->CloseWorkbook(workbook);
}

void MemoryEngine::ActivateWindow(const std::shared_ptr<memory::Window>& window) {
  Changed();
  memory::ActivateWindow(host_, window);
}

ComPtr<IDispatch> MemoryEngine::WindowObject(const std::shared_ptr<memory::Window>& window) {
  return memory::Make<memory::WindowObject>(host_, window).Object();
}

}  // namespace qv::devhost
