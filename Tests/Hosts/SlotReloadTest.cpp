// The real clock in a slot without a toolkit, loaded anew for each language.

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TestEnvironment.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

constexpr const char* Domain = "com.wenmark.velmora5.extras";

class SlotReload : public testing::Test {
 protected:
  SlotReload() {
    for (int day = 1; day <= 9; ++day)
      writeFile(logs_ / ("hosts_tests 2026-11-0" + std::to_string(day) + " 10-00.log"), "");
    write("Time_MenubarFormat", PropertyList::Array{"EEEE", "' '", "HH", ":", "mm"});
    slot_.onNeedsDisplay = [this] { ++redraws_; };
    slot_.onLengthChanged = [this] { lengths_.push_back(slot_.length()); };
    slot_.load(NSMenuExtraBundle(NSBundle::installedPath("VelmoraTime")));
    time_.loop.advance(0.5);
  }

  static void write(const char* key, const PropertyList& value) {
    CFPreferencesSetAppValue(key, value, Domain);
    CFPreferencesAppSynchronize(Domain);
  }

  void choose(const char* language, const char* notification = "VelmoraTimePreferencesChanged") {
    write("language", language);
    NSDistributedNotificationCenter::defaultCenter().postNotification(notification,
                                                                      {{"key", "language"}});
    time_.loop.advance(0.001);
  }

  std::string words() {
    RecordingGraphicsContext context;
    slot_.draw(context);
    return context.joinedText();
  }

  const std::filesystem::path logs_ = testFolder() / "state/velmora5/Logs/Velmora/time";
  SimulatedTime time_;
  NSMenuBarSlot slot_;
  std::vector<double> lengths_;
  int redraws_ = 0;
};

// Would catch: words of the old language, a width of 0 or of an item that has not started, a tick
// of an old extra that goes on, and a log that every loading joins once more.
TEST_F(SlotReload, FollowsTheLanguageWithoutATrace) {
  EXPECT_EQ(words(), "Saturday 15:04");
  ASSERT_EQ(lengths_.size(), 1);
  choose("de");
  const double german = slot_.length();
  choose("fr", "VelmoraGlobalDisplayChange");
  EXPECT_EQ(words(), "samedi 15:04");
  const double french = slot_.length();
  for (int change = 0; change < 50; ++change) {
    lengths_.clear();
    choose(change % 2 == 0 ? "de" : "fr");
    EXPECT_EQ(words(), change % 2 == 0 ? "Samstag 15:04" : "samedi 15:04");
    EXPECT_EQ(lengths_, std::vector<double>{change % 2 == 0 ? german : french});
  }
  slot_.setMenuDown(true);
  choose("fr");
  EXPECT_FALSE(slot_.isMenuDown()) << "the menu was the old extra's";
  time_.loop.advance(2);
  redraws_ = 0;
  time_.loop.advance(10);
  EXPECT_EQ(redraws_, 10) << "one tick a second";

  slot_.unload();
  time_.loop.advance(2);
  EXPECT_EQ(redraws_, 10);
  // What was logged is written when the work on its way is done. The newest log of before, twelve
  // days old, takes it, and seven older ones are kept.
  const auto unloads = [&] {
    const std::string log = readFile(logs_ / "hosts_tests 2026-11-09 10-00.log");
    return componentsSeparatedByString(log, "Unloading...\n").size() - 1;
  };
  EXPECT_TRUE(waitUntil([&] { return unloads() >= 54; }));
  EXPECT_EQ(unloads(), 54);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(logs_), {}), 8);
}

}  // namespace
