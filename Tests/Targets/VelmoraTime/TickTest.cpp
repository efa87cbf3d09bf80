#include <gtest/gtest.h>
#include <stdlib.h>

#include <cmath>
#include <limits>

#include "Platform/Foundation/CFPreferences.h"
#include "Platform/Foundation/NSTimeZone.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Tests/Targets/VelmoraTime/RunningClock.h"

namespace {

constexpr double Day = 86400;

TEST(Tick, StampsTheViewAndThenTellsTheDelegatesInOrder) {
  RunningClock clock(Saturday + 0.3);
  EXPECT_EQ(clock.view().time(), Saturday + 0.3) << "the first pass is part of the start";
  EXPECT_EQ(clock.view().flashState(), 1);
  EXPECT_EQ(clock.slot.redraws, 1);
  int ticks = 0;
  clock.onTick = [&] {
    ++ticks;
    EXPECT_EQ(clock.view().time(), clock.time.now()) << "the view comes first";
    EXPECT_EQ(clock.view().flashState(), ticks % 2 == 0 ? 1 : 0);
    EXPECT_EQ(clock.slot.redraws, 1 + ticks) << "the extra is the first delegate";
  };
  clock.time.loop.advance(10);
  EXPECT_EQ(ticks, 10);
}

/// Follows the seconds that the clock shows, of which each must be the last one's successor unless
/// the system's clock was set.
struct Seconds {
  explicit Seconds(RunningClock& followed)
      : clock(followed), last(std::floor(followed.view().time())) {
    clock.onTick = [this] {
      const double shown = std::floor(clock.view().time());
      EXPECT_EQ(shown, last + 1) << "after " << passes << " passes";
      EXPECT_LT(clock.view().time() - shown, 0.001) << "late after the second's beginning";
      last = shown;
      ++passes;
    };
  }

  void setClock(double now) {
    clock.time.clock.setTimeIntervalSince1970(now);
    last = std::floor(now);
  }

  RunningClock& clock;
  double last;
  int passes = 0;
};

class TickFraction : public testing::TestWithParam<double> {};

TEST_P(TickFraction, OnePassForEachSecond) {
  RunningClock clock(utc(2026, 3, 8) + GetParam());
  Seconds seconds(clock);
  clock.time.loop.advance(1000);
  EXPECT_NEAR(seconds.passes, 1000, 1);
}

INSTANTIATE_TEST_SUITE_P(Starts, TickFraction, testing::Values(0.0, 0.3, 0.5, 0.999999, 0.9999999));

TEST(Tick, OnePassForEachSecondOfADayOnWhichClocksChange) {
  const auto newYork = *NSTimeZone::timeZoneWithName("America/New_York");
  NSDateFormatter formatter;
  formatter.setTimeZone(newYork);
  RunningClock clock(utc(2026, 3, 8, 5));
  Seconds seconds(clock);
  const auto shown = [&] {
    return dateString({"HH", ":", "mm", ":", "ss"}, formatter, clock.view().time());
  };
  EXPECT_EQ(shown(), "00:00:00");
  clock.time.loop.advance(2 * 3600 - 0.5);
  EXPECT_EQ(shown(), "01:59:59");
  clock.time.loop.advance(1);
  EXPECT_EQ(shown(), "03:00:00");
  clock.time.loop.advance(Day - 7200 - 0.5);
  EXPECT_EQ(shown(), "01:00:00");
  EXPECT_EQ(seconds.passes, 86400);
}

TEST(Tick, FollowsAClockThatIsSet) {
  RunningClock clock(Saturday + 0.25);
  Seconds seconds(clock);
  clock.time.loop.advance(100);
  seconds.setClock(clock.time.now() - 3600);
  clock.time.loop.advance(100);
  EXPECT_EQ(seconds.passes, 200);
  EXPECT_EQ(seconds.last, Saturday - 3600 + 200);
  seconds.setClock(clock.time.now() + Day);
  clock.time.loop.advance(100);
  EXPECT_EQ(seconds.passes, 300);
  EXPECT_EQ(seconds.last, Saturday - 3600 + Day + 300);
}

// Set to another fraction, the pass already on its way comes at most a second late, and the next
// ones fall on whole seconds again.
TEST(Tick, AlignsItselfAfterAnUnevenSet) {
  RunningClock clock(Saturday);
  clock.time.loop.advance(10.5);
  clock.time.clock.setTimeIntervalSince1970(Saturday - 3600 + 0.9);
  std::vector<double> times;
  clock.onTick = [&] { times.push_back(clock.view().time() - (Saturday - 3600)); };
  clock.time.loop.advance(3);
  ASSERT_EQ(times.size(), 3);
  EXPECT_NEAR(times[0], 1.4, 1e-5);
  EXPECT_NEAR(times[1], 2, 1e-5);
  EXPECT_NEAR(times[2], 3, 1e-5);
}

/// A clock that says anything at all.
struct AnyClock : SystemClock {
  explicit AnyClock(double value) : now(value) {}
  double timeIntervalSince1970() const override { return now; }
  double now;
};

TEST(Tick, WaitsAtMostASecondWhateverTheClockSays) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  struct Case {
    double now;
    int64_t microseconds;
  };
  for (const auto& [now, microseconds] : {Case{std::nan(""), 1'000'000},
                                          {Infinity, 1'000'000},
                                          {-Infinity, 1'000'000},
                                          {0, 1'000'000},
                                          {1e18, 1'000'000},
                                          {-1e-18, 1'000'000},
                                          {-0.25, 250'000},
                                          {Saturday + 0.75, 250'000},
                                          {Saturday + 0.9999995, 1}}) {
    SCOPED_TRACE(now);
    RunningClock clock(Saturday);
    const AnyClock odd(now);
    SystemClock::install(&odd);
    clock.time.loop.advance(1);  // The pass that asks the odd clock.
    int ticks = 0;
    clock.onTick = [&] { ++ticks; };
    clock.time.loop.advance(static_cast<double>(microseconds - 1) * 1e-6);
    EXPECT_EQ(ticks, 0);
    clock.time.loop.advance(1e-6);
    EXPECT_EQ(ticks, 1);
    SystemClock::install(&clock.time.clock);
  }
}

TEST(Tick, EndsAtUnloadAfterThePassOnItsWay) {
  RunningClock clock(Saturday + 0.5);
  const std::weak_ptr<ZEVModule_Time> module = clock.extra->modules()->front();
  int ticks = 0;
  clock.onTick = [&] { ++ticks; };
  clock.extra->willUnload();
  EXPECT_FALSE(module.expired()) << "the pass on its way keeps it";
  clock.time.loop.advance(0.51);
  EXPECT_TRUE(module.expired()) << "nothing was scheduled any more";
  clock.time.loop.advance(5);
  EXPECT_EQ(ticks, 0);
  EXPECT_EQ(clock.slot.redraws, 1);
}

// Under the address sanitizer: no pass may reach an extra that its host has dropped.
TEST(Tick, SurvivesADroppedExtra) {
  RunningClock clock(Saturday);
  int ticks = 0;
  clock.onTick = [&] { ++ticks; };
  clock.slot.setExtra(nullptr);
  clock.extra.reset();
  clock.time.loop.advance(3);
  EXPECT_EQ(ticks, 3);
}

class PreferenceChange : public testing::Test {
 protected:
  PreferenceChange() : clock(Saturday) {
    clock.onTick = [this] { calls.push_back("update"); };
    clock.onSize = [this] { calls.push_back("size"); };
  }

  double fontSize() { return clock.view().percentageAttributes("text").font.pointSize(); }

  void writeElsewhere(std::string_view key, const PropertyList& value) {
    CFPreferencesSetAppValue(key, value, ZEVPreferences_Time::Domain);
    CFPreferencesAppSynchronize(ZEVPreferences_Time::Domain);
  }

  RunningClock clock;
  Journal calls;
};

TEST_F(PreferenceChange, RefreshesTheKeyAndRedrawsAtOnce) {
  ZEVSetIntegerForKey("Time_TextSize", 9);
  ZEVSetIntegerForKey("Other", 1);
  EXPECT_EQ(fontSize(), 9);
  int64_t size = 9;
  for (const char* resetKey :
       {"", "calendar", "cities", "moon", "citymode", "citynames", "Text", "unknown", "text"}) {
    SCOPED_TRACE(resetKey);
    calls.clear();
    const double before = fontSize();
    ZEVIntegerForKey("Time_TextSize");
    ZEVIntegerForKey("Other");
    writeElsewhere("Time_TextSize", ++size % 8 + 9);
    writeElsewhere("Other", size);
    PropertyList::Dictionary userInfo = {{"key", "Time_TextSize"}};
    if (*resetKey != '\0') userInfo.emplace("resetKey", resetKey);
    clock.post("VelmoraTimePreferencesChanged", userInfo);
    EXPECT_EQ(ZEVIntegerForKey("Time_TextSize"), size % 8 + 9);
    EXPECT_NE(ZEVIntegerForKey("Other"), size) << "only the named key is refreshed";
    EXPECT_EQ(calls, (Journal{"size", "update"}));
    const bool isText = std::string_view(resetKey) == "text";
    EXPECT_EQ(fontSize(), isText ? static_cast<double>(size % 8 + 9) : before);
  }
}

TEST_F(PreferenceChange, WithoutAKeyStillRedraws) {
  clock.post("VelmoraTimePreferencesChanged");
  EXPECT_EQ(calls, (Journal{"size", "update"}));
}

TEST_F(PreferenceChange, IsNotHeardAfterUnload) {
  clock.extra->willUnload();
  clock.post("VelmoraTimePreferencesChanged", {{"key", "Other"}});
  EXPECT_TRUE(calls.empty());
}

/// The zone that the process goes by, which it learns from `TZ` when told to look again.
class ExternalChange : public testing::Test {
 protected:
  ~ExternalChange() override { setMachine("UTC"); }

  static void setMachine(const char* zone) { setenv("TZ", zone, 1); }
  static std::string seenZone() { return NSTimeZone::systemTimeZone().name(); }
};

TEST_F(ExternalChange, TakesTheNewZoneOverASecondLater) {
  for (const char* name :
       {"NSSystemClockDidChangeNotification", "NSSystemTimeZoneDidChangeNotification",
        "AppleDatePreferencesChangedNotification", "AppleTimePreferencesChangedNotification"}) {
    SCOPED_TRACE(name);
    setMachine("UTC");
    NSTimeZone::resetSystemTimeZone();
    RunningClock clock(Saturday);
    EXPECT_EQ(seenZone(), "UTC");
    setMachine("Asia/Tokyo");
    clock.post(name);
    clock.time.loop.advance(0.99);
    EXPECT_EQ(seenZone(), "UTC");
    clock.time.loop.advance(0.02);
    EXPECT_EQ(seenZone(), "Asia/Tokyo");
  }
}

TEST_F(ExternalChange, ActsOnceForEachNotification) {
  RunningClock clock(Saturday);
  clock.post("NSSystemClockDidChangeNotification");
  clock.time.loop.advance(0.5);
  clock.post("NSSystemTimeZoneDidChangeNotification");
  setMachine("Asia/Tokyo");
  clock.time.loop.advance(0.6);
  EXPECT_EQ(seenZone(), "Asia/Tokyo") << "the first";
  setMachine("Asia/Kolkata");
  clock.time.loop.advance(0.3);
  EXPECT_EQ(seenZone(), "Asia/Tokyo");
  clock.time.loop.advance(0.2);
  EXPECT_EQ(seenZone(), "Asia/Kolkata") << "the second";
  setMachine("UTC");
  clock.time.loop.advance(60);
  EXPECT_EQ(seenZone(), "Asia/Kolkata") << "and no more";
}

TEST_F(ExternalChange, IsCancelledAtUnload) {
  RunningClock clock(Saturday);
  EXPECT_EQ(seenZone(), "UTC");
  clock.post("NSSystemClockDidChangeNotification");
  setMachine("Asia/Tokyo");
  clock.module().willUnload();
  clock.time.loop.advance(0.5);
  clock.post("NSSystemClockDidChangeNotification");
  clock.time.loop.advance(5);
  EXPECT_EQ(seenZone(), "UTC");
}

}  // namespace
