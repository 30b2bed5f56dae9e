#pragma once

#include <oaidl.h>

#include <map>
#include <string>
#include <string_view>

namespace qv::devhost::calc {

/// Dispatch ids for member and argument names. A name has one id on every object, whatever its case; the
/// names that Excel's Range publishes have Excel's own numbers, so that a caller with compiled-in ids works
/// too.
class DispatchNames {
 public:
  DispatchNames();

  /// The id of a name, made now when it is new.
  [[nodiscard]] DISPID IdOf(std::string_view name);
  /// The name as it was first spelt, or empty for an id that was never given out.
  [[nodiscard]] std::string NameOf(DISPID id) const;

 private:
  std::map<std::string, DISPID> ids_;
  std::map<DISPID, std::string> names_;
  DISPID next_;
};

/// ASCII letters in lower case, the form in which names are compared.
[[nodiscard]] std::string LowerAscii(std::string_view text);

}  // namespace qv::devhost::calc
