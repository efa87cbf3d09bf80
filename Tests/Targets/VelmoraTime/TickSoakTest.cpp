// A year of the clock's life in simulated time, a second at a time.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cmath>
#include <ctime>

#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Tests/Targets/VelmoraTime/RunningClock.h"

namespace {

constexpr double Day = 86400;
constexpr const char* Zone = "America/New_York";

/// What the C library makes of an instant in the same zone: it reads the zone's rules by itself.
std::string shownByTheSystem(double seconds) {
  const auto whole = static_cast<time_t>(std::floor(seconds));
  tm fields{};
  localtime_r(&whole, &fields);
  char text[64];
  return {text, strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S", &fields)};
}

class YearOfTicks : public testing::Test {
 protected:
  YearOfTicks() {
    setenv("TZ", Zone, 1);
    tzset();
    formatter_.setTimeZone(*NSTimeZone::timeZoneWithName(Zone));
  }

  /// Lives through a stretch of time from a moment on.
  void live(RunningClock& clock, double seconds) {
    last_ = std::floor(clock.time.now());
    clock.onTick = [&] {
      const double shown = std::floor(clock.view().time());
      if (shown != last_ + 1) ++faults_;
      last_ = shown;
      ++passes_;
      // Every full hour and the second before it, on which a change of clocks can show.
      const auto inHour = static_cast<int64_t>(shown) % 3600;
      if (inHour == 0 || inHour == 3599) {
        EXPECT_EQ(dateString({"yyyy-MM-dd", "' '", "HH", ":", "mm", ":", "ss"}, formatter_,
                             clock.view().time()),
                  shownByTheSystem(shown));
      }
    };
    const int64_t before = passes_;
    clock.time.loop.advance(seconds);
    EXPECT_EQ(passes_ - before, static_cast<int64_t>(seconds));
    EXPECT_EQ(faults_, 0) << "a second was shown twice, or left out";
  }

 private:
  NSDateFormatter formatter_;
  double last_ = 0;
  int64_t passes_ = 0;
  int64_t faults_ = 0;
};

TEST_F(YearOfTicks, ShowsEachSecondOnce) {
  const double start = utc(2026, 1, 1) + 0.3;
  // The year's parts end where something happens to the clock: on March 8 and November 1 the zone
  // changes, in May the clock is set back by an hour, in August it jumps ahead by a day.
  const double setBack = utc(2026, 5, 10, 12);
  const double jump = utc(2026, 8, 20, 3);
  const double end = utc(2027, 1, 1);
  RunningClock clock(start);
  live(clock, std::floor(setBack - start));
  clock.time.clock.setTimeIntervalSince1970(clock.time.now() - 3600);
  live(clock, std::floor(jump - clock.time.now()));
  clock.time.clock.setTimeIntervalSince1970(clock.time.now() + Day);
  live(clock, std::floor(end - clock.time.now()));
}

}  // namespace
