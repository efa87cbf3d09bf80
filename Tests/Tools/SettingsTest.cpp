// The settings that the program stores, and what it tells a running clock about them.

#include <gtest/gtest.h>

#include <fstream>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tests/Support/TestBus.h"
#include "Tests/Support/TestEnvironment.h"
#include "Tests/Tools/Timectl.h"

namespace {

TEST(Settings, OfThePreviousVersionAreToldAndGiveWay) {
  const auto file = testFolder() / "config/velmora5/com.wenmark.velmora.extras.plist";
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file) << "<plist><dict><key>ClockFontSize</key><integer>9</integer></dict></plist>";
  const auto size = [](int value, const char* source) {
    return nlohmann::json{{"key", "Time_TextSize"}, {"value", value}, {"source", source}};
  };
  const auto readWith = [](std::vector<std::string> options) {
    options.insert(options.end(), {"defaults", "read", "Time_TextSize"});
    return answer(options);
  };
  EXPECT_EQ(readWith({}), size(9, "previous"));
  EXPECT_EQ(readWith({"--set", "Time_TextSize=20"}), size(20, "stored"));
  EXPECT_EQ(readWith({"--set", "Time_TextSize=null"}), size(13, "default"));
  EXPECT_EQ(readWith({"--no-user-settings"}), size(13, "default"));
  const auto written = timectl({"defaults", "write", "Time_TextSize", "15"});
  EXPECT_EQ(nlohmann::json::parse(written.output), size(15, "stored")) << "the running clock's";
  EXPECT_NE(written.errors.find("defaults write Migrated_5.0 true"), std::string::npos);
  EXPECT_EQ(readWith({}), size(9, "previous")) << "that of a clock that starts";
  answer({"defaults", "write", "Migrated_5.0", "true"});
  EXPECT_EQ(readWith({}), size(15, "stored"));
}

TEST(Settings, ThatCannotBeStoredAreAFailure) {
  const auto file = testFolder() / "a-file";
  std::ofstream(file) << "no folder";
  const auto result =
      timectl({"defaults", "write", "Key", "1"}, {{"XDG_CONFIG_HOME", file / "config"}});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "");
  EXPECT_NE(result.errors.find("velmora-timectl: the setting Key could not be stored\n"),
            std::string::npos)
      << result.errors;
}

// One key of each kind that needs more than a redraw.
TEST(Settings, TellARunningClockWhatToRebuild) {
  const TestBus bus("DBUS_SESSION_BUS_ADDRESS");  // This process joins it, too.
  std::vector<PropertyList::Dictionary> seen;
  const auto observation = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "VelmoraTimePreferencesChanged",
      [&](const NSNotification& notification) { seen.push_back(notification.userInfo); });
  std::vector<std::string> toldToTheFamily;
  const auto familyObservation = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "VelmoraGlobalDisplayChange", [&](const NSNotification& notification) {
        toldToTheFamily.push_back(notification.textForKey("key") + " " +
                                  notification.textForKey("resetKey"));
      });
  const auto waitForNotifications = [&](size_t count) {
    return waitUntil([&] {
      NSRunLoop::mainRunLoop().runPending();
      return seen.size() >= count;
    });
  };
  // An empty one: a redraw is enough.
  using Case = std::pair<const char*, const char*>;
  const Case cases[] = {{"Time_TextSize", "text"},
                        {"Time_CalendarEnabled", "calendar"},
                        {"Time_Cities", "cities"},
                        {"Time_CityNames", "citynames"},
                        {"Time_DropdownCityLayout", "citymode"},
                        {"Time_DropdownShowMoon", "moon"},
                        {"DropdownTheme-Dark", "dropdown"},
                        {"MenubarSkinColor", "styles"},
                        {"DropdownShowLauncher", "launcher"},
                        {"Time_MenubarFormat", ""}};
  size_t count = 0;
  for (const auto& [key, resetKey] : cases) {
    SCOPED_TRACE(key);
    answer(count % 2 == 0 ? std::vector<std::string>{"defaults", "write", key, "1", "--force"}
                          : std::vector<std::string>{"defaults", "delete", key});
    ASSERT_TRUE(waitForNotifications(++count));
    PropertyList::Dictionary expected = {{"key", key}};
    if (*resetKey != '\0') expected.emplace("resetKey", resetKey);
    EXPECT_EQ(seen.back(), expected);
  }
  answer({"defaults", "write", "Time_TextSize", "9", "--reset", "moon"});
  ASSERT_TRUE(waitForNotifications(++count));
  EXPECT_EQ(seen.back(),
            (PropertyList::Dictionary{{"key", "Time_TextSize"}, {"resetKey", "moon"}}));
  EXPECT_EQ(CFPreferencesCopyAppValue("Time_TextSize", ZEVPreferences_Time::Domain),
            PropertyList(9))
      << "the clock itself reads the same file";

  // Calls that change nothing tell nothing; the last write shows that all before it has arrived.
  answer({"defaults", "read", "Time_TextSize"});
  answer({"--set", "Time_TextSize=7", "defaults", "list"});
  timectl({"defaults", "write", "Time_TextSize", "not JSON"});
  answer({"defaults", "write", "Last", "true"});
  ASSERT_TRUE(waitForNotifications(++count));
  EXPECT_EQ(seen.size(), count);
  EXPECT_EQ(seen.back(), (PropertyList::Dictionary{{"key", "Last"}}));
  EXPECT_EQ(toldToTheFamily,
            (std::vector<std::string>{"DropdownTheme-Dark dropdown", "MenubarSkinColor styles",
                                      "DropdownShowLauncher launcher"}));
}

}  // namespace
