#include "engines/memory/host.h"

#include <algorithm>
#include <utility>

#include "foundation/text.h"

namespace qv::devhost::memory {

void Refuse() {
  throw HostError{DISP_E_EXCEPTION, kGeneralFailure};
}

SheetView& Window::ViewOf(const Sheet& sheet) {
  const auto [at, added] = views.try_emplace(&sheet);
  SheetView& view = at->second;
  if (added && (sheet.frozenRows > 0 || sheet.frozenColumns > 0)) {
    view.frozen = true;
    view.splitRow = sheet.frozenRows;
    view.splitColumn = sheet.frozenColumns;
  }
  return view;
}

std::wstring Workbook::FullName() const {
  return path.empty() ? name : Concat(path, L"\\", name);
}

size_t Workbook::IndexOf(const Sheet& sheet) const {
  const auto found =
      std::find_if(sheets.begin(), sheets.end(), [&](const auto& each) { return each.get() == &sheet; });
  return static_cast<size_t>(found - sheets.begin());
}

std::shared_ptr<Sheet> Workbook::FindSheet(std::wstring_view sheetName) const {
  for (const auto& sheet : sheets) {
    if (EqualsIgnoreAsciiCase(sheet->name, sheetName)) return sheet;
  }
  return nullptr;
}

void Host::CountCall(size_t member) {
  if (member >= calls.size()) calls.resize(member + 1);
  ++calls[member];
}

std::shared_ptr<Window> Host::ActiveWindow() const {
  return windows.empty() ? nullptr : windows.front();
}

std::shared_ptr<Workbook> Host::ActiveWorkbook() const {
  const auto window = ActiveWindow();
  return window == nullptr ? nullptr : window->workbook.lock();
}

std::wstring Host::CaptionOf(const Window& window) const {
  if (!window.ownCaption.empty()) return window.ownCaption;
  const auto workbook = window.workbook.lock();
  if (workbook == nullptr) return {};
  if (workbook->windows.size() < 2) return workbook->name;
  size_t number = 1;
  while (number < workbook->windows.size() && workbook->windows[number - 1].get() != &window)
    ++number;
  return Concat(workbook->name, L":", number);
}

std::shared_ptr<Workbook> Host::AddWorkbook(const std::wstring& name, const std::wstring& path,
                                            std::vector<std::shared_ptr<Sheet>> sheets) {
  const auto workbook = std::make_shared<Workbook>();
  workbook->name = name;
  workbook->path = path;
  workbook->sheets = std::move(sheets);
  if (workbook->sheets.empty()) workbook->sheets.push_back(std::make_shared<Sheet>(L"Sheet1"));
  for (const auto& sheet : workbook->sheets)
    sheet->workbook = workbook;
  workbooks.push_back(workbook);
  AddWindow(workbook);
  return workbook;
}

std::shared_ptr<Window> Host::AddWindow(const std::shared_ptr<Workbook>& workbook) {
  const auto window = std::make_shared<Window>();
  window->workbook = workbook;
  window->id = ++lastWindowId_;
  // A window handle is even and 32 bits wide.
  lastWindowHandle_ += 0x2A2;
  window->hwnd = lastWindowHandle_;
  if (!workbook->windows.empty()) {
    window->activeSheet = workbook->windows.back()->activeSheet;
  } else {
    const auto visible = std::find_if(workbook->sheets.begin(), workbook->sheets.end(),
                                      [](const auto& sheet) { return sheet->visible == -1; });
    window->activeSheet = visible == workbook->sheets.end() ? workbook->sheets.front() : *visible;
  }
  workbook->windows.push_back(window);
  windows.push_front(window);
  return window;
}

std::shared_ptr<Sheet> Host::AddSheet(const std::shared_ptr<Workbook>& workbook, std::wstring name,
                                      size_t position) {
  for (int number = static_cast<int>(workbook->sheets.size()) + 1; name.empty(); ++number) {
    std::wstring candidate = Concat(L"Sheet", number);
    if (workbook->FindSheet(candidate) == nullptr) name = std::move(candidate);
  }
  const auto sheet = std::make_shared<Sheet>(std::move(name));
  sheet->workbook = workbook;
  const size_t at = std::min(position, workbook->sheets.size());
  workbook->sheets.insert(workbook->sheets.begin() + static_cast<std::ptrdiff_t>(at), sheet);
  return sheet;
}

void Host::CloseWorkbook(const std::shared_ptr<Workbook>& workbook) {
  workbook->closed = true;
  for (const auto& window : workbook->windows) {
    window->closed = true;
    windows.remove(window);
  }
  workbook->windows.clear();
  std::erase(workbooks, workbook);
}

void Host::CloseWindow(const std::shared_ptr<Window>& window) {
  const auto workbook = window->workbook.lock();
  if (workbook == nullptr || window->closed) return;
  if (workbook->windows.size() == 1) {
    CloseWorkbook(workbook);
    return;
  }
  window->closed = true;
  windows.remove(window);
  std::erase(workbook->windows, window);
}

void Host::DeleteSheet(const std::shared_ptr<Sheet>& sheet) {
  const auto workbook = sheet->workbook.lock();
  if (workbook == nullptr) return;
  sheet->deleted = true;
  const size_t index = workbook->IndexOf(*sheet);
  std::erase(workbook->sheets, sheet);
  for (const auto& window : workbook->windows) {
    window->views.erase(sheet.get());
    if (window->activeSheet != sheet) continue;
    // The next visible sheet takes its place, else the nearest one before it.
    auto next = std::find_if(workbook->sheets.begin() + static_cast<std::ptrdiff_t>(index),
                             workbook->sheets.end(), [](const auto& each) { return each->visible == -1; });
    if (next == workbook->sheets.end()) {
      next = std::find_if(workbook->sheets.begin(), workbook->sheets.end(),
                          [](const auto& each) { return each->visible == -1; });
    }
    window->activeSheet = next == workbook->sheets.end() ? nullptr : *next;
  }
}

void Host::RequireWritable(const Sheet& sheet, const std::vector<Area>& areas) {
  if (!sheet.isProtected) return;
  for (const Area& area : areas) {
    long long unlocked = 0;
    sheet.ForEach(area, [&](long, long, const Cell& cell) {
      if (!cell.Style().locked) ++unlocked;
      return true;
    });
    if (unlocked < area.Cells()) Refuse();
  }
}

void Host::RequireOpenStructure(const Workbook& workbook) {
  if (workbook.isStructureProtected) Refuse();
}

void Host::RequireFormattable(const Sheet& sheet) {
  if (sheet.isProtected) Refuse();
}

}  // namespace qv::devhost::memory
