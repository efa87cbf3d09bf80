// The settings that the program stores, and what it tells a running clock about them.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tests/Support/TestEnvironment.h"
#include "Tests/Tools/Timectl.h"

namespace {

/// The answer without the end of its line.
std::string answer(const std::vector<std::string>& arguments) {
  const auto result = timectl(arguments);
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(result.output.ends_with('\n'));
  return result.output.substr(0, result.output.find('\n'));
}

TEST(Settings, AreWrittenReadListedAndDeleted) {
  const std::string stored = R"({"key":"Time_TextSize","value":15,"source":"stored"})";
  const std::string standard = R"({"key":"Time_TextSize","value":13,"source":"default"})";
  EXPECT_EQ(answer({"defaults", "list"}), "{}");
  EXPECT_EQ(answer({"defaults", "read", "Time_TextSize"}), standard);
  EXPECT_EQ(answer({"defaults", "write", "Time_TextSize", "15"}), stored);
  EXPECT_EQ(answer({"defaults", "read", "Time_TextSize"}), stored);
  EXPECT_EQ(answer({"defaults", "write", "Time_Cities", R"(["1","2"])"}),
            R"({"key":"Time_Cities","value":["1","2"],"source":"stored"})");
  EXPECT_EQ(answer({"defaults", "list"}), R"({"Time_Cities":["1","2"],"Time_TextSize":15})");
  EXPECT_EQ(CFPreferencesCopyAppValue("Time_TextSize", ZEVPreferences_Time::Domain),
            PropertyList(15))
      << "the clock itself reads the same file";
  EXPECT_EQ(answer({"defaults", "delete", "Time_TextSize"}), standard);
  EXPECT_EQ(answer({"defaults", "read", "NoSuchKey"}),
            R"({"key":"NoSuchKey","value":null,"source":"none"})");
}

TEST(Settings, OfOneRunWinAndAreNotStored) {
  answer({"defaults", "write", "Time_DropdownFormat", R"(["HH","'.'","mm"])"});
  EXPECT_EQ(answer({"--set", R"(Time_DropdownFormat=["H","':'","mm"])", "dropdown-time-format"}),
            R"(["H","':'","mm"])");
  EXPECT_EQ(
      answer({"--set", "Time_DropdownFormat=null", "defaults", "read", "Time_DropdownFormat"}),
      R"({"key":"Time_DropdownFormat","value":["hh",":","mm"," ","a"],"source":"default"})");
  EXPECT_EQ(answer({"--set", "Key=1", "--set", "Key=2", "defaults", "read", "Key"}),
            R"({"key":"Key","value":2,"source":"stored"})");
  EXPECT_EQ(answer({"--no-user-settings", "dropdown-time-format"}), R"(["h","':'","mm ","a"])");
  EXPECT_EQ(answer({"--no-user-settings", "--set", "Key=1", "defaults", "list"}), R"({"Key":1})");
  answer({"--set", "Key=1", "defaults", "write", "Other", "2"});
  EXPECT_EQ(answer({"defaults", "list"}), R"({"Other":2,"Time_DropdownFormat":["HH","'.'","mm"]})");
}

TEST(Settings, OfAWrongKindNeedForce) {
  const auto refused = timectl({"defaults", "write", "Time_MenubarFormat", "\"HH\""});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.errors.find("Time_MenubarFormat must be a list of texts"), std::string::npos);
  EXPECT_EQ(answer({"defaults", "list"}), "{}");
  EXPECT_EQ(answer({"defaults", "write", "Time_MenubarFormat", "\"HH\"", "--force"}),
            R"({"key":"Time_MenubarFormat","value":"HH","source":"stored"})");
}

TEST(Settings, OfTheRightKindNeedNone) {
  constexpr std::pair<const char*, const char*> Settings[] = {
      {"language", R"("pt_BR")"},
      {"Time_TextColor", R"("1 0.5 .25 0")"},
      {"Time_MenubarFormat", R"(["HH","'''","''"])"}};
  for (const auto& [key, value] : Settings)
    EXPECT_NE(answer({"defaults", "write", key, value}).find(value), std::string::npos);
}

TEST(Settings, OfThePreviousVersionAreToldAndGiveWay) {
  const auto file = testFolder() / "config/velmora5/com.wenmark.velmora.extras.plist";
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file) << "<plist><dict><key>ClockFontSize</key><integer>9</integer></dict></plist>";
  const auto size = [](int value, const std::string& source) {
    return R"({"key":"Time_TextSize","value":)" + std::to_string(value) + R"(,"source":")" +
           source + "\"}";
  };
  const std::vector<std::string> read = {"defaults", "read", "Time_TextSize"};
  const auto readWith = [&](std::vector<std::string> options) {
    options.insert(options.end(), read.begin(), read.end());
    return answer(options);
  };
  EXPECT_EQ(readWith({}), size(9, "previous"));
  EXPECT_EQ(readWith({"--set", "Time_TextSize=20"}), size(20, "stored"));
  EXPECT_EQ(readWith({"--set", "Time_TextSize=null"}), size(13, "default"));
  EXPECT_EQ(readWith({"--no-user-settings"}), size(13, "default"));
  const auto written = timectl({"defaults", "write", "Time_TextSize", "15"});
  EXPECT_EQ(written.output, size(15, "stored") + "\n") << "the running clock's";
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

TEST(Settings, TellARunningClockWhatToRebuild) {
  // A session bus, which this process and the program both join.
  const ChildProcess bus({"dbus-daemon", "--session", "--nofork", "--print-address"});
  ASSERT_TRUE(waitUntil([&] { return bus.output().ends_with('\n'); })) << bus.errors();
  const std::string address = bus.output();
  setenv("DBUS_SESSION_BUS_ADDRESS", address.substr(0, address.find('\n')).c_str(), 1);
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
  struct Case {
    const char* key;
    const char* resetKey;  ///< Empty: a redraw is enough.
  };
  const Case cases[] = {{"Time_TextSize", "text"},
                        {"Time_TextColor", "text"},
                        {"Time_TextColor-Dark", "text"},
                        {"Time_TextShadowColor", "text"},
                        {"Time_TextShadowColor-Dark", "text"},
                        {"Time_CalendarEnabled", "calendar"},
                        {"Time_CalendarShowEvents", "calendar"},
                        {"Time_CalendarShowWeeks", "calendar"},
                        {"Time_WeekNumberFormat", "calendar"},
                        {"Time_Cities", "cities"},
                        {"Time_CityNames", "citynames"},
                        {"Time_DropdownCityLayout", "citymode"},
                        {"Time_DropdownShowMoon", "moon"},
                        {"DropdownTheme-Dark", "dropdown"},
                        {"Theme-SeperateStyles", "styles"},
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

  // Calls that change nothing tell nothing; the last write shows that all before it has arrived.
  answer({"defaults", "read", "Time_TextSize"});
  answer({"--set", "Time_TextSize=7", "defaults", "list"});
  timectl({"defaults", "write", "Time_TextSize", "not JSON"});
  answer({"defaults", "write", "Last", "true"});
  ASSERT_TRUE(waitForNotifications(++count));
  EXPECT_EQ(seen.size(), count);
  EXPECT_EQ(seen.back(), (PropertyList::Dictionary{{"key", "Last"}}));
  EXPECT_EQ(toldToTheFamily,
            (std::vector<std::string>{"DropdownTheme-Dark dropdown", "Theme-SeperateStyles styles",
                                      "MenubarSkinColor styles", "DropdownShowLauncher launcher"}));
}

}  // namespace
