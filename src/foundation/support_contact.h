#pragma once

namespace qv {

/// Where users get help. A macro, because the message tables are literals that it is part of.
#define QV_SUPPORT_CONTACT L"support@quorvantis.example"

inline constexpr wchar_t kSupportContact[] = QV_SUPPORT_CONTACT;

}  // namespace qv
