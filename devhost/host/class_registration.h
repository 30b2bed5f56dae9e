#pragma once

#include "services/named_lock.h"

namespace qv::devhost {

class CallLog;

/// Makes the add-in's per-user class registration visible to COM. Needed under Wine 8 only, which looks for
/// classes in the machine's hive alone and does not merge the user's into it; elsewhere it does nothing.
void PublishUserClasses(CallLog& log);

/// Hosts that start at once write the same keys, and a class is not to be found while another host writes it.
/// So each writes them, and creates its objects, while it holds this; a host that died with it is no
/// hindrance.
[[nodiscard]] NamedLock LockClasses();

}  // namespace qv::devhost
