#include "engines/memory/memory_engine.h"

#include <filesystem>
#include <fstream>
#include <numeric>
#include <span>
#include <stdexcept>
#include <utility>

#include "engines/memory/application_object.h"
#include "engines/memory/chart_objects.h"
#include "engines/memory/engine_input.h"
#include "engines/memory/fault_json.h"
#include "engines/memory/host_events.h"
#include "engines/memory/range_object.h"
#include "engines/memory/shapes_object.h"
#include "engines/memory/workbook_json.h"
#include "engines/memory/worksheet_object.h"
#include "foundation/text.h"

namespace qv::devhost {

using nlohmann::json;

MemoryEngine::MemoryEngine(HostStyle style)
    : host_(std::make_shared<memory::Host>(style == HostStyle::kWps)),
      application_(new memory::ApplicationObject(host_)) {
  applicationReference_.Attach(application_);
}

MemoryEngine::~MemoryEngine() {
  host_->faults.Clear();
  application_->Events().DisconnectAll();
}

IDispatch* MemoryEngine::Application() {
  return application_;
}

json MemoryEngine::Cell(const std::wstring& sheet, const std::string& address) {
  const auto found = FindSheet(sheet);
  const memory::Area at = CellAt(address);
  const memory::Cell* stored = found->Find(at.row1, at.col1);
  const memory::Cell cell = stored == nullptr ? memory::Cell{} : *stored;
  const std::wstring text = memory::DisplayText(cell.value, cell.Style().numberFormat);
  return {{"value", memory::ValueToJson(cell.value)},
          {"formula", ToUtf8(cell.formula)},
          {"text", ToUtf8(text)},
          {"wrap", cell.Style().wrap},
          {"rowHeight", found->RowHeight(at.row1)},
          {"runs", memory::RunsToJson(cell, text)}};
}

void MemoryEngine::Save(const std::wstring& path) {
  const auto workbook = host_->ActiveWorkbook();
  if (workbook == nullptr) throw std::runtime_error("no workbook is open");
  for (const auto& [opened, book] : openedFiles_) {
    std::error_code ignored;
    if (std::filesystem::equivalent(opened, path, ignored)) {
      throw std::runtime_error("the opened file stays as it is: " + ToUtf8(path));
    }
  }
  std::ofstream output(std::filesystem::path(path), std::ios::binary);
  output << memory::WorkbookToJson(*workbook).dump(1) << "\n";
  output.close();
  if (!output) throw std::runtime_error("cannot write " + ToUtf8(path));
}

void MemoryEngine::Shot(const std::wstring&) {
  throw std::runtime_error("the memory engine has no picture of a sheet");
}

json MemoryEngine::Counters() {
  json calls = json::object();
  const auto& names = memory::ClassInfo::CounterNames();
  for (size_t i = 0; i < host_->calls.size(); ++i) {
    if (host_->calls[i] != 0) calls[names[i]] = host_->calls[i];
  }
  return {{"calls", std::move(calls)},
          {"live", host_->liveObjects},
          {"wrongThread", host_->wrongThread.load()},
          {"sinks", application_->Events().SinkCount()}};
}

void MemoryEngine::ResetCounters() {
  host_->calls.clear();
  host_->wrongThread = 0;
}

void MemoryEngine::Fault(const json& fault) {
  for (const auto& step : memory::FaultStepsFromJson(fault))
    step(*host_);
}

std::shared_ptr<memory::Workbook> MemoryEngine::AddWorkbook(const std::wstring& name,
                                                            const std::wstring& folder,
                                                            const std::vector<std::wstring>& sheets) {
  std::vector<std::shared_ptr<memory::Sheet>> made;
  for (const std::wstring& sheet : sheets)
    made.push_back(std::make_shared<memory::Sheet>(sheet));
  Changed();
  return host_->AddWorkbook(name, folder, std::move(made));
}

void MemoryEngine::SelectChart(const std::wstring& sheet, size_t index) {
  Changed();
  const auto found = FindSheet(sheet);
  ActivateSheet(sheet);
  memory::FrontWindowOf(*host_, *found)->ViewOf(*found).selectedChart = found->charts.at(index);
}

std::shared_ptr<memory::Sheet> MemoryEngine::FindSheet(std::wstring_view name) const {
  const auto window = host_->ActiveWindow();
  const auto workbook = host_->ActiveWorkbook();
  if (workbook == nullptr) throw std::runtime_error("no workbook is open");
  const auto sheet = name.empty() ? window->activeSheet : workbook->FindSheet(name);
  if (sheet == nullptr) throw std::runtime_error("no such sheet: " + ToUtf8(name));
  return sheet;
}

memory::Sheet& MemoryEngine::Sheet(std::wstring_view name) {
  return *FindSheet(name);
}

void MemoryEngine::Set(const std::wstring& sheet, std::string_view address, memory::CellValue value) {
  const memory::Area at = CellAt(address);
  Changed();
  FindSheet(sheet)->SetEntry(at.row1, at.col1, memory::Entry{std::move(value), L"", false, L""});
}

void MemoryEngine::SetFormula(const std::wstring& sheet, std::string_view address, std::wstring formula,
                              memory::CellValue result) {
  const memory::Area at = CellAt(address);
  Changed();
  FindSheet(sheet)->SetEntry(at.row1, at.col1,
                             memory::Entry{std::move(result), std::move(formula), false, L""});
}

void MemoryEngine::Merge(const std::wstring& sheet, std::string_view address) {
  Changed();
  if (!FindSheet(sheet)->Merge(AreasAt(address).front())) throw std::runtime_error("merge: too large");
}

std::shared_ptr<memory::Chart> MemoryEngine::AddChart(const std::wstring& sheet, const std::wstring& title) {
  Changed();
  const auto chart = memory::AddChart(*FindSheet(sheet), 51, 0, 0, 360, 216);
  chart->hasTitle = !title.empty();
  chart->title = title;
  return chart;
}

void MemoryEngine::SelectShapes(const std::wstring& sheet,
                                std::vector<std::shared_ptr<memory::FloatingObject>> shapes) {
  Changed();
  const auto found = FindSheet(sheet);
  ActivateSheet(sheet);
  memory::FrontWindowOf(*host_, *found)->ViewOf(*found).selectedShapes = std::move(shapes);
}

std::shared_ptr<memory::Shape> MemoryEngine::AddPicture(const std::wstring& sheet, const std::wstring& name,
                                                        std::shared_ptr<const memory::PictureData> picture) {
  constexpr double kPointsPerPixel = 0.75;
  constexpr long kPictureShape = 13;
  const auto shape = AddShape(sheet, name, kPictureShape);
  shape->width = picture->width * kPointsPerPixel;
  shape->height = picture->height * kPointsPerPixel;
  shape->picture = std::move(picture);
  return shape;
}

std::shared_ptr<memory::Shape> MemoryEngine::AddShape(const std::wstring& sheet, const std::wstring& name,
                                                      long type) {
  Changed();
  auto shape = memory::AddShape(*FindSheet(sheet), type);
  shape->name = name;
  return shape;
}

void MemoryEngine::PutIntoGroup(memory::Sheet& sheet, memory::Shape& group,
                                const std::vector<std::shared_ptr<memory::Shape>>& shapes) {
  for (const auto& shape : shapes) {
    std::erase(sheet.shapes, shape);
    group.children.push_back(shape);
  }
  const auto& all = group.children;
  group.left = std::ranges::min(all, {}, &memory::Shape::left)->left;
  group.top = std::ranges::min(all, {}, &memory::Shape::top)->top;
  group.width = 0;
  group.height = 0;
  for (const auto& child : all) {
    group.width = std::max(group.width, child->left + child->width - group.left);
    group.height = std::max(group.height, child->top + child->height - group.top);
  }
}

ComPtr<IDispatch> MemoryEngine::SheetObject(const std::wstring& sheet) {
  return memory::Make<memory::WorksheetObject>(host_, FindSheet(sheet)).Object();
}

ComPtr<IDispatch> MemoryEngine::RangeObject(const std::wstring& sheet, std::string_view address) {
  return memory::Make<memory::RangeObject>(host_, FindSheet(sheet), AreasAt(address)).Object();
}

void MemoryEngine::SetEventStyle(EventStyle style) {
  application_->Events().SetStyle(style);
}

void MemoryEngine::Fire(AppEvent event, std::span<const Variant> args) {
  application_->Events().Fire(event, args);
}

std::uint64_t MemoryEngine::Calls(const std::string& member) const {
  const auto& names = memory::ClassInfo::CounterNames();
  for (size_t i = 0; i < host_->calls.size(); ++i) {
    if (names[i] == member) return host_->calls[i];
  }
  return 0;
}

std::uint64_t MemoryEngine::Calls() const {
  return std::accumulate(host_->calls.begin(), host_->calls.end(), std::uint64_t{0});
}

}  // namespace qv::devhost
