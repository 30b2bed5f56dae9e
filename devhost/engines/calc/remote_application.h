#pragma once

#include "engines/calc/remote_object.h"
#include "engines/common/app_events.h"

namespace qv::devhost::calc {

/// The Application: an object like the others that also is the source of events.
class RemoteApplication final : public RemoteObject {
 public:
  RemoteApplication(std::shared_ptr<RemoteSession> session, EventStyle style);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;

  /// Fires what happened in the office since the last time, with the sheet and the range that are active now.
  void FireEvents();
  [[nodiscard]] AppEvents& Events() { return events_; }

 private:
  ~RemoteApplication() override = default;

  AppEvents events_;
};

}  // namespace qv::devhost::calc
