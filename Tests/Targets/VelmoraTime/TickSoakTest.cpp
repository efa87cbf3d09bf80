// A year of the clock's life in simulated time, a second at a time.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cmath>
#include <ctime>

#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Tests/Targets/VelmoraTime/RunningClock.h"

namespace {

constexpr const char* Zone = "America/New_York";

/// What the C library makes of an instant in the same zone: it reads the zone's rules by itself.
std::string shownByTheSystem(double seconds) {
  const auto whole = static_cast<time_t>(std::floor(seconds));
  tm fields{};
  localtime_r(&whole, &fields);
  char text[64];
  return {text, strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S", &fields)};
}

TEST(YearOfTicks, ShowsEachSecondOnce) {
  setenv("TZ", Zone, 1);
  tzset();
  NSDateFormatter formatter;
  formatter.setTimeZone(*NSTimeZone::timeZoneWithName(Zone));
  RunningClock clock(utc(2026, 1, 1) + 0.3);
  double last = 0;
  int64_t passes = 0;
  int64_t faults = 0;
  clock.onTick = [&] {
    const double shown = std::floor(clock.view().time());
    if (shown != last + 1) ++faults;
    last = shown;
    ++passes;
    // Every full hour and the second before it, on which a change of clocks can show.
    const auto inHour = static_cast<int64_t>(shown) % 3600;
    if (inHour == 0 || inHour == 3599) {
      EXPECT_EQ(dateString({"yyyy-MM-dd", "' '", "HH", ":", "mm", ":", "ss"}, formatter,
                           clock.view().time()),
                shownByTheSystem(shown));
    }
  };
  const auto liveUntil = [&](double moment) {
    const double seconds = std::floor(moment - clock.time.now());
    last = std::floor(clock.time.now());
    passes = 0;
    clock.time.loop.advance(seconds);
    EXPECT_EQ(passes, static_cast<int64_t>(seconds));
    EXPECT_EQ(faults, 0) << "a second was shown twice, or left out";
  };
  // On March 8 and November 1 the zone changes, in May the clock is set back by an hour, in August
  // it jumps ahead by a day.
  liveUntil(utc(2026, 5, 10, 12));
  clock.time.clock.setTimeIntervalSince1970(clock.time.now() - 3600);
  liveUntil(utc(2026, 8, 20, 3));
  clock.time.clock.setTimeIntervalSince1970(clock.time.now() + 86400);
  liveUntil(utc(2027, 1, 1));
}

}  // namespace
