#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "engines/calc/dispatch_names.h"
#include "engines/calc/office_connection.h"
#include "engines/common/busy_intervals.h"
#include "engines/common/member_faults.h"
#include "engines/engine.h"

namespace qv::devhost::calc {

/// A failure as IDispatch reports it. `code` is the call's HRESULT; `scode` and `text` belong to
/// DISP_E_EXCEPTION.
struct CallFailure {
  HRESULT code = S_OK;
  SCODE scode = 0;
  std::wstring text;
};

/// What the office answered: `value` when `failure.code` is S_OK.
struct CallAnswer {
  CallFailure failure;
  nlohmann::json value;
};

/// Everything that the objects of one office share: the wire, names, counters, the queue of released handles.
/// Calls on the thread that made it; only `Forget` may come from another one.
class RemoteSession {
 public:
  /// Connects and learns the members of every class. Throws std::runtime_error.
  RemoteSession(unsigned short port, HostStyle style, HWND frame);

  /// True on the thread that may call. Objects answer RPC_E_WRONG_THREAD elsewhere, as those of a real host
  /// do when they are not marshalled.
  [[nodiscard]] bool OnOwnThread() const { return GetCurrentThreadId() == thread_; }
  [[nodiscard]] DispatchNames& Names() { return names_; }
  [[nodiscard]] bool HasMember(const std::string& type, const std::string& name) const;

  /// One request; RPC_E_DISCONNECTED when the office is gone.
  [[nodiscard]] CallAnswer Call(nlohmann::json request);
  /// An operation beside the object model. Throws std::runtime_error with the office's words when it fails.
  nlohmann::json Engine(const char* operation, nlohmann::json options = nlohmann::json::object());

  void CountCall(const std::string& type, const std::string& member) { ++calls_[type + "." + member]; }
  [[nodiscard]] const std::map<std::string, long>& Calls() const { return calls_; }
  void ResetCalls() {
    calls_.clear();
    busy_.Clear();
  }
  [[nodiscard]] BusyIntervals& Busy() { return busy_; }

  [[nodiscard]] MemberFaults& Faults() { return faults_; }

  /// Grows with every call that may have changed what the office shows.
  [[nodiscard]] std::uint64_t Revision() const { return revision_; }
  void NoteChange() { ++revision_; }

  void CountObject();
  /// The handle goes back to the office with the next request, so that a release costs no round trip.
  void Forget(int handle);
  [[nodiscard]] long LiveObjects() const;

  /// What happened in the office since this was last asked: "window", "sheet", "selection".
  [[nodiscard]] std::vector<std::string> TakeEvents() { return std::exchange(events_, {}); }
  /// Called after every call through the object model; the Application fires its events from it.
  void SetAfterCall(std::function<void()> action) { afterCall_ = std::move(action); }
  void AfterCall() const {
    if (afterCall_) afterCall_();
  }

 private:
  OfficeConnection connection_;
  DWORD thread_ = GetCurrentThreadId();
  DispatchNames names_;
  std::map<std::string, std::set<std::string>> members_;
  std::map<std::string, long> calls_;
  BusyIntervals busy_;
  MemberFaults faults_;
  std::uint64_t revision_ = 0;
  std::vector<std::string> events_;
  std::function<void()> afterCall_;
  mutable std::mutex lock_;  // guards what follows: objects may be released anywhere
  std::vector<int> released_;
  long live_ = 0;
};

}  // namespace qv::devhost::calc
