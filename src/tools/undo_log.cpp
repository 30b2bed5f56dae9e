#include "tools/undo_log.h"

namespace qv {

std::optional<UndoRecord> UndoLog::TakeNewest() {
  if (markers_.empty() || records_.size() <= markers_.back()) return std::nullopt;
  UndoRecord newest = std::move(records_.back());
  records_.pop_back();
  return newest;
}

void UndoLog::PopMarker() {
  if (!markers_.empty()) markers_.pop_back();
}

}  // namespace qv
