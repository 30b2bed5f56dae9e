#pragma once

#include <memory>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// What a shape is filled with. Of a picture it is what lies behind it.
class FillFormatObject final : public DispatchObject {
 public:
  FillFormatObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::shared_ptr<Shape> shape)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), shape_(std::move(shape)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Type(Call& call);
  Variant UserPicture(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  [[nodiscard]] std::shared_ptr<const PictureData>& Filling();

  std::shared_ptr<Sheet> sheet_;
  std::shared_ptr<Shape> shape_;
};

/// The look of a picture. It takes no other image, unless the host was told to have such a member.
class PictureFormatObject final : public DispatchObject {
 public:
  PictureFormatObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet, std::shared_ptr<Shape> shape)
      : DispatchObject(std::move(host)), sheet_(std::move(sheet)), shape_(std::move(shape)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override;

  Variant Brightness(Call&) { return Variant(0.5); }
  Variant UserPicture(Call& call);
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  [[nodiscard]] bool Lacks(std::string_view member) const override;

  std::shared_ptr<Sheet> sheet_;
  std::shared_ptr<Shape> shape_;
};

}  // namespace qv::devhost::memory
