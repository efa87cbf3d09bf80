#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Desktop/DesktopFixture.h"
#include "Tests/Support/TestEnvironment.h"

namespace fs = std::filesystem;

namespace {

/// Counts what comes under one name.
class Counter {
 public:
  explicit Counter(const char* name)
      : observation_(NSDistributedNotificationCenter::defaultCenter().addObserver(
            name, [this](const NSNotification&) { ++count_; })) {}

  /// Serves the loop until that many have come.
  bool reaches(int count, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    return waitUntil(
        [&] {
          NSRunLoop::mainRunLoop().runPending();
          return count_ >= count;
        },
        limit);
  }

  /// Serves the loop for a while in which no more should come.
  int countAfterAWhile() {
    reaches(count_ + 100, std::chrono::milliseconds(300));
    return count_;
  }

 private:
  int count_ = 0;
  NSObservation observation_;
};

bool desktopIsDark() {
  const auto style = CFPreferencesCopyAppValue("AppleInterfaceStyle", ".GlobalPreferences");
  return style.string() != nullptr && *style.string() == "Dark";
}

bool contrastIsIncreased() {
  return CFPreferencesCopyAppValue("increaseContrast", "com.apple.universalaccess").boolValue();
}

// A desktop that is dark before the clock starts must not show a light clock first.
TEST(DesktopSettings, AreThereAtTheFirstReadAndFollowEverySwitch) {
  DesktopFixture desktop;
  desktop.set("color-scheme", 1);
  desktop.set("contrast", 1);
  EXPECT_TRUE(desktopIsDark());
  EXPECT_TRUE(contrastIsIncreased());
  Counter themes("AppleInterfaceThemeChangedNotification");
  Counter contrasts("AXInterfaceIncreaseContrastStatusDidChange");
  desktop.set("color-scheme", 2);
  EXPECT_TRUE(themes.reaches(1));
  EXPECT_FALSE(desktopIsDark());
  desktop.set("color-scheme", 1);
  EXPECT_TRUE(themes.reaches(2));
  EXPECT_TRUE(desktopIsDark());
  desktop.set("contrast", 0);
  EXPECT_TRUE(contrasts.reaches(1));
  EXPECT_FALSE(contrastIsIncreased());
  // The same value again is no change.
  desktop.set("contrast", 0);
  EXPECT_EQ(contrasts.countAfterAWhile(), 1);
  EXPECT_EQ(themes.countAfterAWhile(), 2);
  // An override, as of a tool's own options, is not the desktop's business.
  setPreferenceOverride("AppleInterfaceStyle", {}, ".GlobalPreferences");
  EXPECT_FALSE(desktopIsDark());
}

// The answers at the start are older than the change, and come to be looked at later.
TEST(DesktopSettings, ChangeBeforeTheirFirstRead) {
  DesktopFixture desktop;
  desktop.set("color-scheme", 1);
  Counter themes("AppleInterfaceThemeChangedNotification");
  desktop.set("color-scheme", 2);
  EXPECT_TRUE(themes.reaches(1));
  EXPECT_FALSE(desktopIsDark());
}

// The portal of a session often starts after its clock, and is restarted by updates, as is the bus.
TEST(DesktopSettings, AreAskedAgainWhenThePortalOrTheBusComesBack) {
  DesktopFixture desktop;
  desktop.set("color-scheme", 1);
  Counter themes("AppleInterfaceThemeChangedNotification");
  EXPECT_TRUE(desktopIsDark());
  desktop.stop();
  desktop.start();
  EXPECT_TRUE(themes.reaches(1));
  EXPECT_FALSE(desktopIsDark());
  desktop.restartSession(1);
  EXPECT_TRUE(themes.reaches(2));
  EXPECT_TRUE(desktopIsDark());
  desktop.set("color-scheme", 0);
  EXPECT_TRUE(themes.reaches(3));
}

TEST(SleepWatch, TellsAResumeOnceAndNoSuspend) {
  DesktopFixture desktop;
  Counter clock("NSSystemClockDidChangeNotification");
  desktop.call({"Sleep", "boolean:true"});
  EXPECT_EQ(clock.countAfterAWhile(), 0);
  desktop.call({"Sleep", "boolean:false"});
  EXPECT_TRUE(clock.reaches(1));
  EXPECT_EQ(clock.countAfterAWhile(), 1);
}

class TimeZoneWatch : public testing::Test {
 protected:
  TimeZoneWatch() {
    unsetenv("TZ");
    setenv("VELMORA_LOCALTIME_FILE", link_.c_str(), 1);
    point("Europe/Berlin");
  }

  /// As system tools do it: a new link takes the old one's place.
  void point(const char* zone) const {
    const fs::path fresh = link_.string() + ".new";
    fs::create_symlink(fs::path("/usr/share/zoneinfo") / zone, fresh);
    fs::rename(fresh, link_);
  }

  static std::string zoneAfterReset() {
    NSTimeZone::resetSystemTimeZone();
    return NSTimeZone::systemTimeZone().name();
  }

  fs::path link_ = testFolder() / "localtime";
};

TEST_F(TimeZoneWatch, TellsANewTargetOnce) {
  DesktopFixture desktop;
  Counter zones("NSSystemTimeZoneDidChangeNotification");
  EXPECT_EQ(NSTimeZone::systemTimeZone().name(), "Europe/Berlin");
  point("Asia/Kathmandu");
  EXPECT_TRUE(zones.reaches(1));
  // The date service's signal for the same change comes later.
  desktop.call({"ZoneChanged"});
  EXPECT_EQ(zones.countAfterAWhile(), 1);
  EXPECT_EQ(NSTimeZone::systemTimeZone().name(), "Europe/Berlin") << "kept until it is reset";
  EXPECT_EQ(zoneAfterReset(), "Asia/Kathmandu");
  // A link that is removed before the new one is made.
  fs::remove(link_);
  EXPECT_TRUE(zones.reaches(2));
  EXPECT_EQ(zoneAfterReset(), "UTC");
  point("America/New_York");
  EXPECT_TRUE(zones.reaches(3));
  EXPECT_EQ(zoneAfterReset(), "America/New_York");
}

// New rules in the same file, as an update of the zone data brings them.
TEST_F(TimeZoneWatch, TellsNewRulesOfTheSameZone) {
  const fs::path zones = testFolder() / "zoneinfo" / "Test";
  fs::create_directories(zones);
  fs::copy_file("/usr/share/zoneinfo/Asia/Tokyo", zones / "Zone");
  setenv("TZDIR", (testFolder() / "zoneinfo").c_str(), 1);
  fs::remove(link_);
  fs::create_symlink(zones / "Zone", link_);
  Counter changes("NSSystemTimeZoneDidChangeNotification");
  const NSTimeZone before = NSTimeZone::systemTimeZone();
  fs::copy_file("/usr/share/zoneinfo/Asia/Kathmandu", zones / "New");
  fs::rename(zones / "New", zones / "Zone");
  EXPECT_TRUE(changes.reaches(1));
  NSTimeZone::resetSystemTimeZone();
  EXPECT_EQ(before.secondsFromGMT(), 9 * 3600);
  EXPECT_EQ(NSTimeZone::systemTimeZone().secondsFromGMT(), 5 * 3600 + 45 * 60);
}

}  // namespace
