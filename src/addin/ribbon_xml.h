#pragma once

#include <oaidl.h>

namespace qv {

/// The ribbon's description for the host, which frees it. A failure leaves null in `xml`, and what became of
/// it stands in the log.
[[nodiscard]] HRESULT LoadRibbonXml(BSTR& xml);

}  // namespace qv
