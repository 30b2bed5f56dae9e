#pragma once

#include <oaidl.h>
#include <ocidl.h>
#include <oleidl.h>

#include "foundation/com_object.h"

// The pane control's own interface and class, as the type library describes them.

/// Dual interface without members of its own: the panel page does all the talking. Its identifier tells our
/// control from any other.
struct IQuorvantisExcelPane : public IDispatch {};

__CRT_UUID_DECL(IQuorvantisExcelPane, 0xD4E5F6A7, 0xB8C9, 0x4012, 0x8D, 0xEF, 0xA3, 0x45, 0x67, 0x89, 0x01,
                0x23)

namespace qv {

/// Class "Quorvantis.ExcelPane".
inline constexpr CLSID kExcelPaneClassId = {
    0xB2C3D4E5, 0xF6A7, 0x8901, {0xBC, 0xDE, 0xF1, 0x23, 0x45, 0x67, 0x89, 0x01}};

template <>
struct ComBaseOf<IQuorvantisExcelPane> {
  using Type = IDispatch;
};
template <>
struct ComBaseOf<IOleInPlaceObject> {
  using Type = IOleWindow;
};
template <>
struct ComBaseOf<IOleInPlaceActiveObject> {
  using Type = IOleWindow;
};
template <>
struct ComBaseOf<IViewObject2> {
  using Type = IViewObject;
};
template <>
struct ComBaseOf<IPersistStreamInit> {
  using Type = IPersist;
};

}  // namespace qv
