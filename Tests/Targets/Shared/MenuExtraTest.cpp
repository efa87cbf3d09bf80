#include "Targets/Shared/ZEVMenuExtra.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "Platform/AppKit/Menus/RowText.h"
#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Shared/External/Logging/DDLog.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Support/TestEnvironment.h"
#include "Tests/Targets/Shared/FakeExtra.h"

namespace {

class MenuExtra : public FakeExtraTest {
 protected:
  void post(const char* name, const PropertyList::Dictionary& userInfo = {}) {
    NSDistributedNotificationCenter::defaultCenter().postNotification(name, userInfo);
    time.loop.runPending();
  }
};

TEST_F(MenuExtra, TakesASlotAndStartsOnTheNextPass) {
  add("a");
  add("b").setKey(-7);
  begin();
  EXPECT_EQ(slot.lengths, std::vector<double>{20});
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
  extra->isCombined = true;
  add("a").setKey(4);
  add("b").setKey(7);
  module(1).row = createTextMenuItem("row", 237, 15, true);
  start();
  const std::pair<const char*, const char*> cases[] = {
      {"7, 9,4,7,7.5", "/B/row/A/"},
      {"4", "/A/"},
      {"9,,x",
       "//No dropdown items enabled//Please enable some dropdown items in the/"
       "combined tab in the Velmora app//"}};
  for (const auto& [keys, rows] : cases) {
    ZEVSetObjectForKey("CombinedDropdownDisplayMode", keys);
    extra->rebuildCombinedMenu();
    std::string shown;
    for (const auto& item : extra->menu()->itemArray())
      shown += rowName(*item) + "/";
    EXPECT_EQ(shown, rows) << keys << ": what is read aloud";
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
  const auto still = createTextMenuItem("still", 237, 15, true);
  still->view()->setHighlightable(false);
  menu->addItem(still);
  extra->menuWillHighlightItem(*menu, still.get());
  EXPECT_FALSE(still->view()->menuItemHighlighted());
  extra->menuWillHighlightItem(*menu, module(1).row.get());
  EXPECT_TRUE(module(1).row->view()->menuItemHighlighted());
  extra->menuDidClose(*menu);
  EXPECT_FALSE(module(1).row->view()->menuItemHighlighted());
  EXPECT_EQ(changes, 2);
  extra->willUnload();
  EXPECT_EQ(menu->delegate(), nullptr);
  EXPECT_EQ(extra->menu(), nullptr);
}

/// The event in which a module fails, the stage that is told, and whether the exception is a
/// standard one.
using Failure = std::tuple<const char*, const char*, bool>;
class FailingStart : public MenuExtra, public testing::WithParamInterface<Failure> {};

TEST_P(FailingStart, CollapsesTheItemAndTellsTheStage) {
  const auto& [failing, stage, isStandard] = GetParam();
  add("good");
  add("bad").onEvent = [failing = failing, isStandard = isStandard](const std::string& event) {
    if (event != failing) return;
    if (!isStandard) throw 5;
    std::vector<int>().at(1);
  };
  add("never");
  begin();
  testing::internal::CaptureStderr();
  time.loop.runPending();
  const std::string told = "Velmora exception in fake - " + std::string(stage) + " - bad\n";
  EXPECT_NE(testing::internal::GetCapturedStderr().find(told), std::string::npos);
  // The same stands in the log's only file, with the stack of what has thrown, not of the handler.
  DDLog_Time::flushLog();
  const auto folder = testFolder() / "state/velmora5/Logs/Velmora/fake";
  ASSERT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
  const std::string kept = readFile(std::filesystem::directory_iterator(folder)->path());
  EXPECT_NE(kept.find(told), std::string::npos) << kept;
  for (const char* ofStandard : {"vector::_M_range_check", "libstdc++.so"})
    EXPECT_EQ(kept.find(ofStandard) != std::string::npos, isStandard) << kept;
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
  const std::pair<const char*, Journal> cases[] = {
      {"dropdown", {"a skin", "b skin", "posted", "a theme", "b theme", "a global", "b global"}},
      {"styles", {"a skin", "b skin", "posted", "a theme", "b theme", "a global", "b global"}},
      {"launcher", {"a skin", "b skin", "a rebuild", "b rebuild", "a global", "b global"}},
      {"", {"a skin", "b skin", "a global", "b global"}},
  };
  add("a");
  add("b");
  start();
  const auto observation = NSNotificationCenter::defaultCenter().addObserver(
      "DropdownThemeChanged", [&](const NSNotification&) { journal.push_back("posted"); });
  int value = 0;
  for (const auto& [resetKey, steps] : cases) {
    SCOPED_TRACE(resetKey);
    ZEVIntegerForKey("Value");
    CFPreferencesSetAppValue("Value", ++value, ZEVPreferences_Time::Domain);
    journal.clear();
    slot.redraws = 0;
    post("VelmoraGlobalDisplayChange", {{"key", "Value"}, {"resetKey", resetKey}});
    EXPECT_EQ(ZEVIntegerForKey("Value"), value) << "the key was not refreshed";
    EXPECT_EQ(journal, steps);
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
  add("b").onEvent = [](const std::string& event) {
    if (event == "unload") throw std::runtime_error("jammed");
  };
  add("c");
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

TEST(Module, CollectorsWorkAtTheirFrequency) {
  for (const auto& [sequence, low, normal, high, unknown] :
       casesIn<int64_t, bool, bool, bool, bool>("Targets/Shared/Cases/collector-frequencies.txt")) {
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
