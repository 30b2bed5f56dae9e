#include "tools/image_selection.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "workbook/automation.h"

namespace qv {
namespace {

/// More selected shapes than that are not asked for their places.
constexpr std::int32_t kMaxSelectedShapes = 1000;

/// The selected shapes by name, with place and size and nothing of where they belong.
class SelectedShapes {
 public:
  explicit SelectedShapes(std::wstring sheetName) { place_.sheetName = std::move(sheetName); }

  /// Adds what is selected; without a range of shapes (a part of a chart) the chart that is active.
  void Read(IDispatch* application, IDispatch* selection) {
    const ComPtr<IDispatch> range = Child(selection, L"ShapeRange");
    if (range == nullptr) {
      const ComPtr<IDispatch> chart = Child(application, L"ActiveChart");
      return Add(Child(chart.Get(), L"Parent").Get());
    }
    const std::int32_t count = std::min(GetIntProperty(range.Get(), L"Count"), kMaxSelectedShapes);
    for (std::int32_t index = 1; index <= count && !answer_.IsBusy(); ++index) {
      HostAnswer answer;
      Add(GetCollectionItem(range.Get(), Variant(index), &answer).Get());
      if (answer.IsBusy()) answer_ = answer;
    }
  }

  [[nodiscard]] bool IsEmpty() const { return shapes_.empty(); }
  [[nodiscard]] bool IsBusy() const { return answer_.IsBusy(); }
  /// Whether the shape is one of them, wherever it lies.
  [[nodiscard]] bool Has(ImageAnchor shape) const {
    shape.childPath.clear();
    const auto [first, last] = shapes_.equal_range(shape.shapeName);
    return std::any_of(first, last, [&](const auto& entry) { return IsSamePicture(entry.second, shape); });
  }

 private:
  [[nodiscard]] ComPtr<IDispatch> Child(IDispatch* object, const wchar_t* property) {
    if (object == nullptr) return nullptr;
    HostAnswer answer;
    ComPtr<IDispatch> child = GetDispProperty(object, property, &answer);
    if (answer.IsBusy()) answer_ = answer;
    return child;
  }
  void Add(IDispatch* shape) {
    if (shape == nullptr) return;
    if (auto anchor = ReadAnchor(shape, place_, answer_)) shapes_.emplace(anchor->shapeName, *anchor);
  }

  ImageAnchor place_;
  std::unordered_multimap<std::wstring, ImageAnchor> shapes_;
  HostAnswer answer_;
};

/// Whether the groups that pictures lie in are selected; each group is asked once, as its pictures follow
/// each other.
class SelectedGroups {
 public:
  SelectedGroups(IDispatch* sheet, const SelectedShapes& selected)
      : shapes_(GetDispProperty(sheet, L"Shapes")), selected_(selected) {}

  [[nodiscard]] bool HasGroupOf(const SheetPicture& picture) {
    if (!picture.IsInGroup()) return false;
    if (picture.anchor.shapeIndex != index_) {
      index_ = picture.anchor.shapeIndex;
      const ComPtr<IDispatch> group = GetCollectionItem(shapes_.Get(), Variant(index_));
      HostAnswer answer;
      const auto anchor = ReadAnchor(group.Get(), picture.anchor, answer);
      isSelected_ = anchor && selected_.Has(*anchor);
    }
    return isSelected_;
  }

 private:
  ComPtr<IDispatch> shapes_;
  const SelectedShapes& selected_;
  /// The group asked last.
  std::int32_t index_ = 0;
  bool isSelected_ = false;
};

}  // namespace

SelectedPicture FindSelectedPicture(const TargetContext& target) {
  HostAnswer answer;
  const ComPtr<IDispatch> selection = target.GetTargetSelectionDrv(&answer);
  if (answer.IsBusy()) return {{}, true};
  const ComPtr<IDispatch> sheet = target.GetActiveSheetDispatch();
  const std::wstring sheetName = GetStringProperty(sheet.Get(), L"Name");
  SelectedShapes selected(sheetName);
  selected.Read(target.Application(), selection.Get());
  if (selected.IsBusy()) return {{}, true};
  if (selected.IsEmpty()) return {};
  SheetPictures found = FindPictures(sheet.Get(), sheetName);
  if (found.answer.IsBusy()) return {{}, true};
  SelectedGroups groups(sheet.Get(), selected);
  for (SheetPicture& picture : found.pictures) {
    if (selected.Has(picture.anchor) || groups.HasGroupOf(picture)) return {std::move(picture), false};
  }
  return {};
}

}  // namespace qv
