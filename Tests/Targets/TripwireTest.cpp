// Fails when the clock's vocabulary gains an element without a case in each walker, or the code a
// settings key of the Time module or a notification that no test is listed for.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "Targets/VelmoraTime/Classes/ClockElements.h"
#include "Tests/Targets/VelmoraTime/ElementCases.h"

namespace {

namespace fs = std::filesystem;

/// Text in the code → the test that covers it, as "Suite, Name".
const std::multimap<std::string, std::string> Tested = {
    // Types of the calendar leaf.
    {"___ICON__TRANSPARENT___", "TransparentLeaf, HasWhitePartsOnADarkBar"},
    {"___ICON__RED___", "CalendarLeaf, HasPaperHeadAndNumber"},
    {"___ICON__BLUE___", "CalendarLeaf, HasPaperHeadAndNumber"},
    {"___ICON__GEAPHITE___", "CalendarLeaf, HasPaperHeadAndNumber"},
    {"___ICON__GREEN___", "CalendarLeaf, HasPaperHeadAndNumber"},
    {"___ICON__ORANGE___", "CalendarLeaf, HasPaperHeadAndNumber"},
    {"___ICON__PINK___", "CalendarLeaf, HasPaperHeadAndNumber"},
    {"___ICON__BLACK___", "CalendarLeaf, HasPaperHeadAndNumber"},
    // Keys.
    {"Time_MenubarFormat", "DefaultSettings, FollowTheLocale"},
    {"Time_DropdownFormat", "DropdownTimeFormat, IsCutOutOfTheSetting"},
    {"Time_TextSize", "TextAttributes, SizesOutsideTheRangeGiveThirteenPoints"},
    {"Time_TextColor", "TextColour, FollowsTheBar"},
    {"Time_TextShadowColor", "TextAttributes, AShadowWithoutStrengthIsNone"},
    {"Time_MenubarFlashSeperators", "ClockDrawing, OnlySeparatorsBehindTheTimeFlash"},
    {"Time_WeekNumberFormat", "DateString, WeekOfTheLocalDate"},
    {"Time_Cities", "Dropdown, RowsFollowTheSettings"},
    {"Time_DropdownCityLayout", "Dropdown, RowsFollowTheSettings"},
    {"Time_DropdownCityLayout", "WorldClock, RowsAreLaidOutForTheCitysOwnName"},
    {"Time_DropdownShowMoon", "Dropdown, RowsFollowTheSettings"},
    {"Time_CityNames", "Dropdown, RowsFollowTheSettings"},
    {"Time_CalendarEnabled", "Dropdown, RowsFollowTheSettings"},
    {"Time_CalendarShowEvents", "Events, ComeIntoTheOpenMenuAndFollowTheStore"},
    {"Time_CalendarFolders", "Events, AreKeptByTheCollectorForTheLastRange"},
    {"Time_CalendarAddresses", "Events, AreKeptByTheCollectorForTheLastRange"},
    {"Time_CalendarShowWeeks", "DefaultSettings, OfTimeAndTheFamily"},
    {"TimerFrequency", "Module, CollectorsWorkAtTheirFrequency"},
    {"Theme-SeperateStyles", "MenuExtra, ThemeOfTheBarReachesTheDropdownOnlyWithSeparateStyles"},
    {"DropdownTheme", "Preferences, StylesFollowTheBarOnlyWhereTheyAreSeparate"},
    {"MenubarTheme", "Preferences, StylesFollowTheBarOnlyWhereTheyAreSeparate"},
    {"MenubarGraphOpacity", "Preferences, StylesFollowTheBarOnlyWhereTheyAreSeparate"},
    {"MenubarGraphOpacity-DarkMode", "Preferences, StylesFollowTheBarOnlyWhereTheyAreSeparate"},
    {"CombinedDropdownDisplayMode", "MenuExtra, ACombinedMenuShowsTheListedModules"},
    {"CombinedMenubarDisplayMode", "MenuExtraView, ACombinedExtraDrawsTheListedModules"},
    {"com.apple.preferences.timezone.selected_city",
     "MoonPicture, TheSystemsCityDecidesTheHemisphere"},
    {"language", "SharedFormatter, TakesTheLanguageOnceAtItsFirstUse"},
    // Notifications.
    {"VelmoraTimePreferencesChanged", "PreferenceChange, RefreshesTheKeyAndRedrawsAtOnce"},
    {"VelmoraEventsChanged", "Events, ComeIntoTheOpenMenuAndFollowTheStore"},
    {"VelmoraGlobalDisplayChange", "MenuExtra, DisplayChangesReachTheModulesInSteps"},
    {"VelmoraMenubarThemeChanged", "Preferences, ThemeAndContrastChangesDropBothCaches"},
    {"DropdownThemeChanged", "MenuExtra, DisplayChangesReachTheModulesInSteps"},
    {"DropdownThemeChanged", "DropdownTheme, ReachesTextsInOpenAndReopenedMenus"},
    {"ZEVMenuStateChanged", "MenuExtra, ACombinedMenuShowsTheListedModules"},
    {"ZEVMenuStateChanged", "Dropdown, FollowsTheTickAndTheFormatWhileItIsOpen"},
    {"VelmoraUnloadedExtra", "MenuExtra, UnloadsEvenIfAModuleThrows"},
    {"AppleInterfaceThemeChangedNotification",
     "Preferences, ThemeAndContrastChangesDropBothCaches"},
    {"AXInterfaceIncreaseContrastStatusDidChange",
     "Preferences, ThemeAndContrastChangesDropBothCaches"},
    {"NSSystemClockDidChangeNotification", "ExternalChange, TakesTheNewZoneOverASecondLater"},
    {"NSSystemTimeZoneDidChangeNotification", "ExternalChange, TakesTheNewZoneOverASecondLater"},
    {"AppleDatePreferencesChangedNotification", "ExternalChange, TakesTheNewZoneOverASecondLater"},
    {"AppleTimePreferencesChangedNotification", "ExternalChange, TakesTheNewZoneOverASecondLater"},
};

/// Text in the code → why no test is about it.
const std::map<std::string, std::string> Parked = {
    {"d", "the day that a suffix hangs on, tested as that"},
    {"g", "the days that a relative day compares, tested as that"},
    {"ccc", "what \"EE\" becomes, tested as that"},
    {"cccc", "what \"EEEE\" becomes, tested as that"},
    {"ccccc", "what \"EEEEE\" becomes, tested as that"},
    {"MenubarSkinColor", "read only below a system level that this platform is above"},
    {"TimeMenubarText", "only refreshed, for a preferences application that still writes it"},
    {"TimeMenubarTextSelected",
     "only refreshed, for a preferences application that still writes it"},
};

std::string contentsOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The sources below a folder of the repository, by path.
std::map<std::string, std::string> sourcesIn(const char* folder) {
  std::map<std::string, std::string> sources;
  for (const auto& entry :
       fs::recursive_directory_iterator(fs::path(VELMORA_SOURCE_DIR) / folder)) {
    const auto extension = entry.path().extension();
    if (extension == ".cpp" || extension == ".h") {
      sources.emplace(entry.path().string(), contentsOf(entry.path()));
    }
  }
  return sources;
}

void collect(const std::string& source, const std::regex& pattern, std::set<std::string>& found) {
  for (std::sregex_iterator match(source.begin(), source.end(), pattern), end; match != end;
       ++match) {
    found.insert((*match)[1]);
  }
}

/// What the code knows by name.
std::set<std::string> namesInTheCode() {
  const std::regex named(
      R"re("(__[A-Z_]+|FUZZY|Time_\w+|[A-Z]\w+(Notification|Changed|Change|UnloadedExtra))")re");
  const std::regex key(R"re((?:ForKey|offsetForFont|RefreshKey)\(\s*"([^"]+)")re");
  const std::regex element(R"re("(([a-zA-Z])\2*|'[:.]')")re");
  std::set<std::string> names;
  for (const auto& [path, source] : sourcesIn("Targets")) {
    collect(source, named, names);
    if (path.find("Migration") == std::string::npos) collect(source, key, names);
    if (source.find("ClockElements") != std::string::npos) collect(source, element, names);
  }
  // In the user information of notifications.
  names.erase("key");
  names.erase("resetKey");
  return names;
}

bool hasCase(std::string_view element) {
  return std::ranges::any_of(ElementCases,
                             [&](const ElementCase& row) { return row.element == element; });
}

TEST(Tripwire, EveryElementHasACaseInEachWalker) {
  for (const ClockElement& entry : clockVocabulary())
    EXPECT_TRUE(hasCase(entry.name)) << entry.name;
}

TEST(Tripwire, EveryNameInTheCodeIsTestedOrParked) {
  const auto names = namesInTheCode();
  EXPECT_GT(names.size(), 50) << "the sources were not found";
  for (const std::string& name : names) {
    EXPECT_EQ(Tested.contains(name) + Parked.contains(name) + hasCase(name), 1)
        << "\"" << name << "\" must be listed as tested or as parked";
  }
  for (const auto& [name, test] : Tested)
    EXPECT_TRUE(names.contains(name)) << name << " has gone";
  for (const auto& [name, reason] : Parked)
    EXPECT_TRUE(names.contains(name)) << name << " has gone";
}

TEST(Tripwire, EveryListedTestExistsAndNamesItsSubject) {
  const auto tests = sourcesIn("Tests/Targets");
  for (const auto& [name, test] : Tested) {
    bool isThere = false;
    for (const auto& [path, source] : tests) {
      if (path.find("Tripwire") != std::string::npos) continue;
      isThere = isThere || (source.find("(" + test + ")") != std::string::npos &&
                            source.find("\"" + name + "\"") != std::string::npos);
    }
    EXPECT_TRUE(isThere) << test << " for " << name;
  }
}

}  // namespace
