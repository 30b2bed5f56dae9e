#pragma once

#include <memory>
#include <vector>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

using FloatingObjects = std::vector<std::shared_ptr<FloatingObject>>;

/// A new shape on top of the others, named "Picture 1" and so on.
std::shared_ptr<Shape> AddShape(Sheet& sheet, long type);

/// The floating objects of a sheet: charts, pictures, groups and other shapes, from the lowest on.
class ShapesObject final : public DispatchObject {
 public:
  ShapesObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Count(Call&) { return Variant(static_cast<long>(sheet_->Floating().size())); }
  Variant Item(Call& call);
  Variant AddChart2(Call& call);
  Variant AddPicture(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
};

/// A fixed choice of shapes: what is in a group, or what is selected.
class ShapeListObject final : public DispatchObject {
 public:
  enum class Kind { kGroup, kSelection };
  ShapeListObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, FloatingObjects objects,
                  Kind kind)
      : DispatchObject(std::move(host)),
        sheet_(std::move(sheet)),
        objects_(std::move(objects)),
        kind_(kind) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Count(Call&) { return Variant(static_cast<long>(objects_.size())); }
  Variant Item(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
  FloatingObjects objects_;
  Kind kind_;
};

/// What is selected while a shape is: the older drawing object that stands for it.
class DrawingObject final : public DispatchObject {
 public:
  DrawingObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, FloatingObjects objects)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), objects_(std::move(objects)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Name(Call&) { return Variant(objects_.front()->name); }
  Variant ShapeRange(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  std::shared_ptr<Sheet> sheet_;
  FloatingObjects objects_;
};

/// One floating object.
class ShapeObject final : public DispatchObject {
 public:
  ShapeObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet,
              std::shared_ptr<FloatingObject> object)
      : DispatchObject(std::move(host)),
        sheet_(std::move(sheet)),
        object_(std::move(object)),
        chart_(std::dynamic_pointer_cast<Chart>(object_)),
        shape_(std::dynamic_pointer_cast<Shape>(object_)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Name(Call& call);
  Variant Type(Call& call);
  Variant HasChart(Call& call);
  Variant ChartOf(Call& call);
  template <double FloatingObject::*Field>
  Variant Position(Call& call) {
    return AccessPosition(*object_, Field, call);
  }
  template <std::wstring FloatingObject::*Field>
  Variant Text(Call& call) {
    return AccessText(*object_, Field, call);
  }
  /// -1 and 0 for on and off.
  template <bool FloatingObject::*Field>
  Variant Switch(Call& call) {
    return AccessSwitch(*object_, Field, call);
  }
  Variant Placement(Call& call);
  Variant ZOrderPosition(Call& call);
  Variant ZOrder(Call& call);
  Variant GroupItems(Call& call);
  Variant Fill(Call& call);
  Variant PictureFormat(Call& call);
  Variant CopyPicture(Call& call);
  Variant Copy(Call& call);
  Variant Delete(Call& call);
  Variant Parent(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

  /// Left, Top, Width or Height, in points.
  [[nodiscard]] static Variant AccessPosition(FloatingObject& object, double FloatingObject::*field,
                                              Call& call);

 private:
  [[nodiscard]] static Variant AccessText(FloatingObject& object, std::wstring FloatingObject::*field,
                                          Call& call);
  [[nodiscard]] static Variant AccessSwitch(FloatingObject& object, bool FloatingObject::*field, Call& call);

  std::shared_ptr<Sheet> sheet_;
  std::shared_ptr<FloatingObject> object_;
  /// One of the two is null.
  std::shared_ptr<Chart> chart_;
  std::shared_ptr<Shape> shape_;
};

/// Copies what is drawn to the clipboard as `CopyPicture` does, with its arguments "Appearance" and "Format".
void CopyDrawing(Host& host, Call& call, HBITMAP drawing);

}  // namespace qv::devhost::memory
