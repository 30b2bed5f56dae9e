#pragma once

namespace qv::devhost {

class CallLog;

/// Makes the add-in's per-user class registration visible to COM. Needed under Wine 8 only, which looks for
/// classes in the machine's hive alone and does not merge the user's into it; elsewhere it does nothing.
void PublishUserClasses(CallLog& log);

}  // namespace qv::devhost
