#include "Platform/Foundation/Time/SystemClock.h"

#include <cmath>
#include <ctime>

namespace {

class OperatingSystemClock : public SystemClock {
 public:
  double timeIntervalSince1970() const override {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
  }
};

const OperatingSystemClock operatingSystemClock;
std::atomic<const SystemClock*> installedClock = &operatingSystemClock;

}  // namespace

const SystemClock& SystemClock::sharedClock() { return *installedClock; }

void SystemClock::install(const SystemClock* clock) {
  installedClock = clock != nullptr ? clock : &operatingSystemClock;
}

ManualClock::ManualClock(double seconds) : wall_(std::llround(seconds * 1e6)) {}

double ManualClock::timeIntervalSince1970() const {
  // The whole seconds are split off first: one division of the full count would round them.
  const int64_t wall = wall_;
  const int64_t microseconds = ((wall % 1'000'000) + 1'000'000) % 1'000'000;
  const int64_t seconds = (wall - microseconds) / 1'000'000;
  return static_cast<double>(seconds) + static_cast<double>(microseconds) * 1e-6;
}

void ManualClock::setTimeIntervalSince1970(double seconds) { wall_ = std::llround(seconds * 1e6); }

void ManualClock::advanceMicroseconds(int64_t microseconds) {
  wall_ += microseconds;
  elapsed_ += microseconds;
}
