#include "engines/memory/shape_formats.h"

#include "engines/memory/picture_file.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {
namespace {

// MsoFillType, and the shape types that show a picture of their own.
constexpr long kSolid = 1;
constexpr long kPictureFill = 6;
constexpr long kLinkedPicture = 11;
constexpr long kPictureShape = 13;

void RequireAliveShape(const Sheet& sheet, const Shape& shape) {
  RequireAliveSheet(sheet);
  if (shape.deleted) throw HostError{RPC_E_DISCONNECTED};
}

std::shared_ptr<const PictureData> RequirePicture(Call& call) {
  if (call.Arg(0) == nullptr) throw HostError{DISP_E_PARAMNOTOPTIONAL};
  auto picture = LoadPicture(ToText(*call.Arg(0)));
  if (picture == nullptr) Refuse();
  return picture;
}

}  // namespace

const ClassInfo& FillFormatObject::Class() const {
  using F = FillFormatObject;
  static const ClassInfo info("FillFormat", {
                                                {L"Type", kGet, Do<&F::Type>},
                                                {L"UserPicture", kMethod, Do<&F::UserPicture>},
                                                {L"Application", kGet, Do<&F::Application>},
                                            });
  return info;
}

void FillFormatObject::RequireAlive() const {
  RequireAliveShape(*sheet_, *shape_);
}

std::shared_ptr<const PictureData>& FillFormatObject::Filling() {
  const bool isPicture = shape_->type == kPictureShape || shape_->type == kLinkedPicture;
  return isPicture ? shape_->backdrop : shape_->picture;
}

Variant FillFormatObject::Type(Call&) {
  return Variant(Filling() != nullptr ? kPictureFill : kSolid);
}

Variant FillFormatObject::UserPicture(Call& call) {
  Host::RequireFormattable(*sheet_);
  Filling() = RequirePicture(call);
  return {};
}

const ClassInfo& PictureFormatObject::Class() const {
  using P = PictureFormatObject;
  static const ClassInfo info("PictureFormat", {
                                                   {L"Brightness", kGet, Do<&P::Brightness>},
                                                   {L"UserPicture", kMethod, Do<&P::UserPicture>},
                                                   {L"Application", kGet, Do<&P::Application>},
                                               });
  return info;
}

void PictureFormatObject::RequireAlive() const {
  RequireAliveShape(*sheet_, *shape_);
}

bool PictureFormatObject::Lacks(std::string_view member) const {
  return member == "UserPicture" && !GetHost().pictureFormatTakesImage;
}

Variant PictureFormatObject::UserPicture(Call& call) {
  Host::RequireFormattable(*sheet_);
  shape_->picture = RequirePicture(call);
  return {};
}

}  // namespace qv::devhost::memory
