#include <algorithm>

#include "engines/memory/sheet.h"

namespace qv::devhost::memory {
namespace {

void RemoveFrom(std::vector<std::shared_ptr<Shape>>& shapes, const FloatingObject& object) {
  std::erase_if(shapes, [&](const auto& shape) { return shape.get() == &object; });
  for (const auto& shape : shapes)
    RemoveFrom(shape->children, object);
}

}  // namespace

std::vector<std::shared_ptr<FloatingObject>> Sheet::Floating() const {
  std::vector<std::shared_ptr<FloatingObject>> all(charts.begin(), charts.end());
  all.insert(all.end(), shapes.begin(), shapes.end());
  std::ranges::stable_sort(all, {}, [](const auto& object) { return object->depth; });
  return all;
}

long Sheet::TopDepth() const {
  const auto all = Floating();
  return all.empty() ? 1 : all.back()->depth + 1;
}

void Sheet::Remove(FloatingObject& object) {
  object.deleted = true;
  std::erase_if(charts, [&](const auto& chart) { return chart.get() == &object; });
  RemoveFrom(shapes, object);
}

}  // namespace qv::devhost::memory
