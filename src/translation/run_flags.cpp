#include "translation/run_flags.h"

#include <chrono>
#include <thread>

namespace qv {
namespace {

constexpr std::chrono::milliseconds kPausePoll{50};

}  // namespace

bool RunFlags::Pass() const {
  while (paused_ && !cancelled_)
    std::this_thread::sleep_for(kPausePoll);
  return !cancelled_;
}

}  // namespace qv
