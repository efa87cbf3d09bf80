#include <gtest/gtest.h>
#include <stdlib.h>

#include <cmath>
#include <limits>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/AppKit/Events/NSApplication.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Tests/Targets/VelmoraTime/RunningClock.h"

namespace {

TEST(Tick, StampsTheViewAndThenTellsTheDelegatesInOrder) {
  ZEVSetObjectForKey("Time_MenubarFormat", PropertyList::Array{"HH", "':'", "ss"});
  ZEVSetBoolForKey("Time_MenubarFlashSeperators", true);
  RunningClock clock(Saturday + 0.3);
  EXPECT_EQ(clock.view().time(), Saturday + 0.3) << "the first pass is part of the start";
  EXPECT_EQ(clock.slot.redraws, 1);
  std::string shown;
  clock.onTick = [&] {
    EXPECT_EQ(clock.view().time(), clock.time.now()) << "not cut to the second";
    RecordingGraphicsContext context;
    clock.slot.draw(context);
    shown += context.joinedText() + " " + std::to_string(clock.slot.redraws) + " ";
  };
  clock.time.loop.advance(4);
  EXPECT_EQ(shown, "1506 2 15:07 3 1508 4 15:09 5 ") << "the view comes first, then the extra";
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
  using Wait = std::pair<double, int64_t>;
  for (const auto& [now, microseconds] : {Wait{std::nan(""), 1'000'000},
                                          {Infinity, 1'000'000},
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
  clock.waitForCities();
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

TEST(Start, LaysMenusOutAsTheLanguageIsRead) {
  NSLocale::setCurrentLocale("he_IL");
  const auto isFromTheRight = [](const PropertyList& language) {
    ZEVSetObjectForKey("language", language);
    const RunningClock clock(Saturday);
    return NSApplication::sharedApplication().userInterfaceLayoutDirection() ==
           NSUserInterfaceLayoutDirection::RightToLeft;
  };
  EXPECT_TRUE(isFromTheRight({})) << "the environment's";
  EXPECT_FALSE(isFromTheRight("ja"));
  EXPECT_TRUE(isFromTheRight("ar"));
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
  EXPECT_EQ(fontSize(), 13);
  int64_t size = 8;
  for (const char* resetKey :
       {"", "calendar", "cities", "moon", "citymode", "citynames", "unknown", "text"}) {
    SCOPED_TRACE(resetKey);
    calls.clear();
    EXPECT_NE(ZEVIntegerForKey("Time_TextSize"), ++size);
    EXPECT_NE(ZEVIntegerForKey("Other"), size);
    writeElsewhere("Time_TextSize", size);
    writeElsewhere("Other", size);
    clock.post("VelmoraTimePreferencesChanged", {{"key", "Time_TextSize"}, {"resetKey", resetKey}});
    EXPECT_EQ(ZEVIntegerForKey("Time_TextSize"), size);
    EXPECT_NE(ZEVIntegerForKey("Other"), size) << "only the named key is refreshed";
    EXPECT_EQ(calls, (Journal{"size", "update"}));
    EXPECT_EQ(fontSize(), std::string_view(resetKey) == "text" ? 16 : 13);
  }
  calls.clear();
  clock.post("VelmoraTimePreferencesChanged");
  EXPECT_EQ(calls, (Journal{"size", "update"})) << "without a key";
  calls.clear();
  clock.extra->willUnload();
  clock.post("VelmoraTimePreferencesChanged", {{"key", "Other"}});
  EXPECT_TRUE(calls.empty()) << "after the end";
}

/// The zone that the process goes by, which it learns from `TZ` when told to look again.
class ExternalChange : public testing::Test {
 protected:
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
