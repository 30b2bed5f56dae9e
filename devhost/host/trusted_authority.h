#pragma once

#include <string>

namespace qv::devhost {

/// Makes this user's programs trust the development authority in the PEM file, and tells the browser behind
/// the web view to. Under Wine only, where the user is a scratch one. Before any web view is made. Throws
/// std::runtime_error.
void TrustAuthority(const std::wstring& pemPath);

}  // namespace qv::devhost
