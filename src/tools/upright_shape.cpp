#include "tools/upright_shape.h"

#include <utility>

#include "foundation/guard.h"
#include "foundation/logging.h"

namespace qv {

UprightShape::UprightShape(IDispatch* sheet, IDispatch* shape) {
  const double turn = GetNumberProperty(shape, L"Rotation").value_or(0);
  if (turn == 0) return;
  ComPtr<IDispatch> book = GetDispProperty(sheet, L"Parent");
  Variant saved;
  if (SUCCEEDED(GetProperty(book.Get(), L"Saved", saved)) && saved.IsTrue()) savedBook_ = std::move(book);
  if (!PutProperty(shape, L"Rotation", Variant(0.0)).Ok()) return;
  shape_ = shape;
  turn_ = turn;
}

UprightShape::~UprightShape() {
  if (shape_ == nullptr) return;
  Guard(L"UprightShape", [this] {
    if (!PutProperty(shape_.Get(), L"Rotation", Variant(turn_)).Ok()) {
      PaneLog(L"ExcelImageTranslate rotation not put back\r\n");
    }
    if (savedBook_ != nullptr) static_cast<void>(PutProperty(savedBook_.Get(), L"Saved", Variant(true)));
  });
}

}  // namespace qv
