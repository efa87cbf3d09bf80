#include "Targets/Shared/ZEVMenuExtra.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "Platform/AppKit/Menus/RowText.h"
#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Shared/External/Logging/DDLog.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/TestEnvironment.h"
#include "Tests/Targets/Shared/FakeExtra.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

using Lengths = std::vector<double>;

class MenuExtra : public testing::Test {
 protected:
  void add(const std::string& name) {
    extra->prepared.push_back(std::make_shared<FakeModule>(name, journal));
  }
  FakeModule& module(size_t index) { return *extra->prepared[index]; }

  void begin() {
    slot.setExtra(extra);
    extra->init(slot, NSBundle());
  }
  void start() {
    begin();
    time.loop.runPending();
    journal.clear();
  }

  void post(const char* name, const PropertyList::Dictionary& userInfo = {}) {
    NSDistributedNotificationCenter::defaultCenter().postNotification(name, userInfo);
    time.loop.runPending();
  }

  SimulatedTime time;
  Journal journal;
  FakeSlot slot;
  std::shared_ptr<FakeExtra> extra = std::make_shared<FakeExtra>();
};

TEST_F(MenuExtra, TakesASlotAndStartsOnTheNextPass) {
  add("a");
  add("b");
  module(1).setKey(-7);
  begin();
  EXPECT_EQ(slot.lengths, Lengths{20});
  EXPECT_EQ(extra->view()->frame().size, (NSSize{20, 22}));
  EXPECT_EQ(extra->modules(), nullptr);
  EXPECT_EQ(extra->menu(), nullptr);
  EXPECT_EQ(extra->moduleWithKey(-7), nullptr) << "before the start";
  EXPECT_TRUE(journal.empty());
  time.loop.runPending();
  EXPECT_EQ(journal, (Journal{"a setup", "a notifications", "b setup", "b notifications"}));
  ASSERT_NE(extra->modules(), nullptr);
  EXPECT_TRUE(module(1).isInMenubar());
  EXPECT_EQ(module(0).delegates().all(), std::vector<ZEVModuleDelegate*>{extra.get()});
  EXPECT_EQ(extra->view()->frame().size, (NSSize{20, 22})) << "the view takes over the frame";
  EXPECT_EQ(extra->moduleWithKey(-7), extra->prepared[1]);
  EXPECT_EQ(extra->moduleWithKey(4), nullptr);
  journal.clear();
  EXPECT_EQ(extra->menu(), nullptr);
  EXPECT_TRUE(journal.empty()) << "only a lone module gives the menu";
}

TEST_F(MenuExtra, ALoneModuleGivesTheMenu) {
  add("a");
  start();
  EXPECT_EQ(extra->menu(), nullptr) << "an empty menu would open an empty window";
  EXPECT_EQ(journal, Journal{"a menu"});
  const auto menu = module(0).menu();
  menu->addItem(createMenuItem());
  EXPECT_EQ(extra->menu(), menu);
  EXPECT_EQ(menu->delegate(), &module(0));
}

TEST_F(MenuExtra, ACombinedMenuShowsTheListedModules) {
  struct Case {
    const char* keys;
    std::vector<std::string> rows;  ///< What is read aloud for each.
  };
  extra->isCombined = true;
  add("a");
  add("b");
  module(0).setKey(4);
  module(1).setKey(7);
  module(1).row = createTextMenuItem("row", 237, 15, true);
  start();
  const Case cases[] = {
      {"7, 9,4,7,7.5", {"", "B", "row", "A"}},
      {"4", {"", "A"}},
      {"9,,x",
       {"", "", "No dropdown items enabled", "", "Please enable some dropdown items in the",
        "combined tab in the Velmora app", ""}}};
  for (const auto& [keys, rows] : cases) {
    ZEVSetObjectForKey("CombinedDropdownDisplayMode", keys);
    extra->rebuildCombinedMenu();
    std::vector<std::string> shown;
    for (const auto& item : extra->menu()->itemArray())
      shown.push_back(rowName(*item));
    EXPECT_EQ(shown, rows) << keys;
  }
  EXPECT_EQ(extra->menu()->itemArray()[2]->view()->frame().size, (NSSize{260, 15}));

  ZEVSetObjectForKey("CombinedDropdownDisplayMode", "7");
  extra->rebuildCombinedMenu();
  const auto menu = extra->menu();
  EXPECT_EQ(menu->itemArray()[1]->view()->frame().size, (NSSize{225, 20}));
  int changes = 0;
  const auto observation = NSNotificationCenter::defaultCenter().addObserver(
      "ZEVMenuStateChanged", [&](const NSNotification&) { ++changes; });
  extra->menuWillOpen(*menu);
  extra->menuWillHighlightItem(*menu, module(1).row.get());
  EXPECT_TRUE(module(1).row->view()->menuItemHighlighted());
  extra->menuDidClose(*menu);
  EXPECT_FALSE(module(1).row->view()->menuItemHighlighted());
  EXPECT_EQ(changes, 2);
  extra->willUnload();
  EXPECT_EQ(menu->delegate(), nullptr);
  EXPECT_EQ(extra->menu(), nullptr);
}

struct Failure {
  const char* event;
  const char* stage;
  bool isStandard;
};

class FailingStart : public MenuExtra, public testing::WithParamInterface<Failure> {};

TEST_P(FailingStart, CollapsesTheItemAndTellsTheStage) {
  add("good");
  add("bad");
  add("never");
  module(1).onEvent = [](const std::string& event) {
    if (event != GetParam().event) return;
    if (!GetParam().isStandard) throw 5;
    std::vector<int>().at(1);
  };
  begin();
  testing::internal::CaptureStderr();
  time.loop.runPending();
  const std::string log = testing::internal::GetCapturedStderr();
  const std::string told =
      "Velmora exception in fake - " + std::string(GetParam().stage) + " - bad\n";
  EXPECT_NE(log.find(told), std::string::npos) << log;
  EXPECT_EQ(log.find("vector::_M_range_check") != std::string::npos, GetParam().isStandard) << log;
  // The same stands in the log's only file.
  DDLog_Time::flushLog();
  const auto folder = testFolder() / "state/velmora5/Logs/Velmora/fake";
  ASSERT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
  const std::string kept = readFile(std::filesystem::directory_iterator(folder)->path());
  EXPECT_NE(kept.find(told), std::string::npos) << kept;
  // The library that threw stands on the stack; on the handler's it would not.
  EXPECT_EQ(kept.find("libstdc++.so") != std::string::npos, GetParam().isStandard) << kept;
  EXPECT_TRUE(kept.ends_with("Unloading...\n")) << kept;
  EXPECT_TRUE(kept.starts_with("2026/11/21 15:04:05:000  2026-11-21 15:04:05 +0000\n")) << kept;

  EXPECT_EQ(slot.lengths.back(), 0);
  EXPECT_EQ(extra->view()->frame().size, (NSSize{0, 22}));
  EXPECT_EQ(extra->modules(), nullptr);
  EXPECT_EQ(journal[0], "good setup");
  EXPECT_EQ(Journal(journal.end() - 3, journal.end()),
            (Journal{"good unload", "bad unload", "never unload"}));

  // The host goes on, and the extra hears nothing more.
  journal.clear();
  extra->willUnload();
  EXPECT_EQ(extra->cleanups, 1) << "its host unloads it once more";
  const int redraws = slot.redraws;
  post("VelmoraGlobalDisplayChange");
  NSNotificationCenter::defaultCenter().postNotification("VelmoraMenubarThemeChanged");
  EXPECT_TRUE(journal.empty());
  EXPECT_EQ(slot.redraws, redraws);
}

INSTANTIATE_TEST_SUITE_P(Stages, FailingStart,
                         testing::Values(Failure{"setup", "setup module at index", true},
                                         Failure{"setup", "setup module at index", false},
                                         Failure{"notifications", "notifictions module at index",
                                                 true}));

TEST_F(MenuExtra, DisplayChangesReachTheModulesInSteps) {
  struct Case {
    const char* resetKey;
    Journal steps;
    int themePosts;
  };
  const Case cases[] = {
      {"dropdown", {"a skin", "b skin", "a theme", "b theme", "a global", "b global"}, 1},
      {"styles", {"a skin", "b skin", "a theme", "b theme", "a global", "b global"}, 1},
      {"launcher", {"a skin", "b skin", "a rebuild", "b rebuild", "a global", "b global"}, 0},
      {"", {"a skin", "b skin", "a global", "b global"}, 0},
  };
  add("a");
  add("b");
  start();
  int themePosts = 0;
  const auto observation = NSNotificationCenter::defaultCenter().addObserver(
      "DropdownThemeChanged", [&](const NSNotification&) { ++themePosts; });
  int value = 0;
  for (const auto& [resetKey, steps, posts] : cases) {
    SCOPED_TRACE(resetKey);
    ZEVIntegerForKey("Value");
    CFPreferencesSetAppValue("Value", ++value, ZEVPreferences_Time::Domain);
    journal.clear();
    slot.redraws = themePosts = 0;
    post("VelmoraGlobalDisplayChange", {{"key", "Value"}, {"resetKey", resetKey}});
    EXPECT_EQ(ZEVIntegerForKey("Value"), value) << "the key was not refreshed";
    EXPECT_EQ(journal, steps);
    EXPECT_EQ(themePosts, posts);
    EXPECT_EQ(slot.redraws, 1);
  }
}

TEST_F(MenuExtra, ThemeOfTheBarReachesTheDropdownOnlyWithSeparateStyles) {
  add("a");
  start();
  for (const bool areSeparate : {false, true}) {
    ZEVSetBoolForKey("Theme-SeperateStyles", areSeparate);
    journal.clear();
    slot.redraws = 0;
    NSNotificationCenter::defaultCenter().postNotification("VelmoraMenubarThemeChanged");
    EXPECT_EQ(journal, areSeparate ? Journal{"a theme"} : Journal{});
    EXPECT_EQ(slot.redraws, 1);
  }
  // Contrast is the whole desktop's.
  ZEVSetBoolForKey("Theme-SeperateStyles", false);
  journal.clear();
  setPreferenceOverride("increaseContrast", true, "com.apple.universalaccess");
  post("AXInterfaceIncreaseContrastStatusDidChange");
  EXPECT_EQ(journal, Journal{"a theme"});
}

TEST_F(MenuExtra, UnloadsEvenIfAModuleThrows) {
  add("a");
  add("b");
  add("c");
  module(1).onEvent = [](const std::string& event) {
    if (event == "unload") throw std::runtime_error("jammed");
  };
  start();
  std::vector<std::string> unloaded;
  const auto observation = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "VelmoraUnloadedExtra", [&](const NSNotification& notification) {
        unloaded.push_back(notification.textForKey("extra"));
      });
  extra->willUnload();
  EXPECT_EQ(journal, (Journal{"a unload", "b unload"})) << "the exception ends the walk";
  EXPECT_EQ(extra->modules(), nullptr);
  EXPECT_EQ(extra->menu(), nullptr);
  EXPECT_EQ(extra->cleanups, 1);
  journal.clear();
  post("VelmoraGlobalDisplayChange", {{"resetKey", "launcher"}});
  EXPECT_EQ(unloaded, std::vector<std::string>{"fake"});
  EXPECT_TRUE(journal.empty());
}

TEST_F(MenuExtra, DelegatesAreToldOnceAndInOrder) {
  add("a");
  start();
  FakeExtra other;
  const auto registration = module(0).addDelegate(other);
  const auto extraAgain = module(0).addDelegate(*extra);
  const auto otherAgain = module(0).addDelegate(other);
  EXPECT_EQ(module(0).delegates().all(), (std::vector<ZEVModuleDelegate*>{extra.get(), &other}));
  const auto module = extra->prepared.front();
  slot.setExtra(nullptr);
  extra.reset();
  EXPECT_EQ(module->delegates().all(), (std::vector<ZEVModuleDelegate*>{&other}))
      << "an extra that is dropped leaves none behind";
}

TEST_F(MenuExtra, DatabasesLieInTheUsersDataFolder) {
  const auto folder = testFolder() / "data" / "Velmora" / "databases";
  EXPECT_EQ(ZEVModule_Time::databasePath("events", nullptr), folder / "events.db");
  EXPECT_TRUE(std::filesystem::is_directory(folder));
  EXPECT_EQ(ZEVModule_Time::databasePath("events", nullptr), folder / "events.db");
  extra->isCombined = true;
  add("a");
  start();
  EXPECT_EQ(module(0).databasePath("events"), folder / "combined_events.db");
}

// Which runs of a collector do the heavy part of the work, for each frequency.
TEST(Module, CollectorsWorkAtTheirFrequency) {
  struct Case {
    int64_t sequence;
    bool low, normal, high, unknown;
  };
  for (const auto& [sequence, low, normal, high, unknown] : {Case{-1, true, true, true, true},
                                                             {0, true, true, true, false},
                                                             {1, false, false, true, false},
                                                             {3, true, false, true, false},
                                                             {6, true, true, true, false},
                                                             {-2, false, true, true, false}}) {
    const bool expected[] = {low, normal, high, unknown};
    for (int frequency = 0; frequency <= 3; ++frequency) {
      ZEVSetIntegerForKey("TimerFrequency", frequency);
      EXPECT_EQ(ZEVModule_Time().collectorShouldUpdateStateForSequence(StatCollector(), sequence),
                expected[frequency])
          << sequence << " at " << frequency;
    }
  }
}

}  // namespace
