#include "tools/image_selection.h"

#include <algorithm>
#include <string>
#include <vector>

#include "workbook/automation.h"

namespace qv {
namespace {

/// The selected shapes as the host tells of them: name, place and size, nothing of where they belong.
std::vector<ImageAnchor> SelectedShapes(IDispatch* selection, const std::wstring& sheetName) {
  std::vector<ImageAnchor> shapes;
  ImageAnchor place;
  place.sheetName = sheetName;
  const ComPtr<IDispatch> range = GetDispProperty(selection, L"ShapeRange");
  const std::int32_t count = GetIntProperty(range.Get(), L"Count");
  for (std::int32_t index = 1; index <= count; ++index) {
    const ComPtr<IDispatch> shape = GetCollectionItem(range.Get(), Variant(index));
    if (shape != nullptr) shapes.push_back(AnchorOfShape(shape.Get(), place));
  }
  return shapes;
}

/// Whether the picture is the shape, or lies in it.
bool IsMeant(const SheetPicture& picture, const ImageAnchor& shape, IDispatch* shapes) {
  ImageAnchor own = picture.anchor;
  own.childPath.clear();
  if (IsSamePicture(own, shape)) return true;
  if (!picture.IsInGroup()) return false;
  const ComPtr<IDispatch> group = GetCollectionItem(shapes, Variant(picture.anchor.shapeIndex));
  return group != nullptr && IsSamePicture(AnchorOfShape(group.Get(), shape), shape);
}

}  // namespace

SelectedPicture FindSelectedPicture(const TargetContext& target) {
  HostAnswer answer;
  const ComPtr<IDispatch> selection = target.GetTargetSelectionDrv(&answer);
  if (answer.IsBusy()) return {{}, true};
  const ComPtr<IDispatch> sheet = target.GetActiveSheetDispatch();
  const std::wstring sheetName = GetStringProperty(sheet.Get(), L"Name");
  const std::vector<ImageAnchor> selected = SelectedShapes(selection.Get(), sheetName);
  if (selected.empty()) return {};
  SheetPictures found = FindPictures(sheet.Get(), sheetName);
  if (found.answer.IsBusy()) return {{}, true};
  const ComPtr<IDispatch> shapes = GetDispProperty(sheet.Get(), L"Shapes");
  for (SheetPicture& picture : found.pictures) {
    const bool isMeant = std::ranges::any_of(
        selected, [&](const ImageAnchor& shape) { return IsMeant(picture, shape, shapes.Get()); });
    if (isMeant) return {std::move(picture), false};
  }
  return {};
}

}  // namespace qv
