#include "Targets/Shared/ZEVPreferences.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/Views/ZEVMenubarStyle.h"
#include "Targets/Shared/ZEVColorText.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

constexpr std::string_view Domain = ZEVPreferences_Time::Domain;
constexpr std::string_view Unknown = "KeyWithoutAnyValue";

/// Writes to the domain past the store and its caches, as another process does.
void writeElsewhere(std::string_view key, const PropertyList& value) {
  CFPreferencesSetAppValue(key, value, Domain);
  CFPreferencesAppSynchronize(Domain);
}

void setDesktop(bool isDark, const PropertyList& contrast) {
  setPreferenceOverride("AppleInterfaceStyle", isDark ? "Dark" : "Light", ".GlobalPreferences");
  setPreferenceOverride("increaseContrast", contrast, "com.apple.universalaccess");
}

TEST(Preferences, StoredBeatsDefaultBeatsNothing) {
  EXPECT_EQ(ZEVObjectForKey("Time_TextSize"), PropertyList(13));
  for (const auto reader :
       {ZEVStoredObjectForKey, ZEVPreferenceForKey, ZEVObjectForKeyWithoutCache}) {
    EXPECT_TRUE(reader("Time_TextSize").isNull()) << "a default is not stored";
  }
  ZEVSetIntegerForKey("Time_TextSize", 9);
  EXPECT_EQ(ZEVIntegerForKey("Time_TextSize"), 9);
  for (const auto reader :
       {ZEVStoredObjectForKey, ZEVPreferenceForKey, ZEVObjectForKeyWithoutCache}) {
    EXPECT_EQ(reader("Time_TextSize"), PropertyList(9));
  }
  ZEVRemoveObjectForKey("Time_TextSize");
  EXPECT_EQ(ZEVIntegerForKey("Time_TextSize"), 13);
  ZEVSetObjectForKey("Value", "-3.75 points");
  EXPECT_TRUE(ZEVBoolForKey("Value"));
  EXPECT_EQ(ZEVIntegerForKey("Value"), -3);
  EXPECT_EQ(ZEVDoubleForKey("Value"), -3.75);
  EXPECT_EQ(ZEVFloatForKey("Value"), -3.75F);
  EXPECT_FALSE(ZEVBoolForKey(Unknown));
}

TEST(Preferences, WhatAnotherProcessWritesShowsAfterRefresh) {
  struct Case {
    std::string_view key;
    PropertyList first;
  };
  // A stored value, a default and the null marker: each is settled by the first read.
  writeElsewhere("Stored", "first");
  for (const auto& [key, first] : {Case{"Stored", "first"}, {"Time_TextSize", 13}, {Unknown, {}}}) {
    EXPECT_EQ(ZEVObjectForKey(key), first);
    writeElsewhere(key, "second");
    EXPECT_EQ(ZEVObjectForKey(key), first) << "the second read went to the store";
    EXPECT_EQ(ZEVObjectForKeyWithoutCache(key), PropertyList("second"));
    EXPECT_EQ(ZEVObjectForKey(key), first) << "reading without the cache must not fill it";
    ZEVRefreshKey("SomeOtherKey");
    EXPECT_EQ(ZEVObjectForKey(key), first);
    ZEVRefreshKey(key);
    EXPECT_EQ(ZEVObjectForKey(key), PropertyList("second"));
  }
}

TEST(Preferences, EveryWriteIsOnTheDiskAtOnce) {
  const PropertyList::Dictionary expected = {{"Bool", true},
                                             {"Integer", int64_t{1} << 53},
                                             {"Float", static_cast<double>(0.1F)},
                                             {"Double", 0.1},
                                             {"List", PropertyList::Array{"'", 2, false}}};
  ZEVSetBoolForKey("Bool", true);
  ZEVSetIntegerForKey("Integer", int64_t{1} << 53);
  ZEVSetFloatForKey("Float", 0.1F);
  ZEVSetDoubleForKey("Double", 0.1);
  ZEVSetObjectForKey("List", expected.at("List"));
  resetPreferences();
  EXPECT_EQ(CFPreferencesCopyAllValues(Domain), expected);
  ZEVSetObjectForKey("", "a value without a key");
  EXPECT_EQ(CFPreferencesCopyAllValues(Domain), expected);
  ZEVSetObjectForKey("List", {});
  resetPreferences();
  EXPECT_TRUE(CFPreferencesCopyAppValue("List", Domain).isNull()) << "null removes";
}

TEST(Preferences, ColourTextsHaveFourPieces) {
  const auto rgba = [](float red, float green, float blue, float alpha) {
    return NSColor::colorWithDeviceRed(red, green, blue, alpha);
  };
  EXPECT_EQ(colorFromString("1 0 .25 0.5"), rgba(1, 0, 0.25F, 0.5F));
  EXPECT_EQ(colorFromString("red 0.5x - 1"), rgba(0, 0.5F, 0, 1))
      << "a piece is read like a number";
  for (const PropertyList& value :
       {PropertyList("1 0 0"), PropertyList("1  0 0 1"), PropertyList(""), PropertyList(5)}) {
    EXPECT_FALSE(colorFromString(value).has_value());
  }
  // Two decimals: 0.254 and 0.098 are rounded.
  EXPECT_EQ(stringFromColor(rgba(1, 0.254F, 0.098F, 0)), "1.00 0.25 0.10 0.00");
}

TEST(Preferences, ColoursStayUntilTheirKeyIsInvalidated) {
  const NSColor blue = NSColor::colorWithDeviceRed(0, 0, 1, 1);
  ZEVSetObjectForKey("Color", "0 0 1");
  EXPECT_EQ(ZEVColorForKey("Color"), NSColor::blackColor());
  writeElsewhere("Color", "0 0 1 1");
  ZEVPreferences_Time::sharedPreferences()->clearCache();
  EXPECT_EQ(ZEVColorForKey("Color"), NSColor::blackColor()) << "the fallback is cached too";
  EXPECT_EQ(ZEVObjectForKey("Color"), PropertyList("0 0 1 1")) << "the value is not";
  ZEVRefreshKey("Color");
  EXPECT_EQ(ZEVColorForKey("Color"), blue);
  ZEVSetObjectForKey("Color", 7);
  EXPECT_EQ(ZEVColorForKey("Color"), NSColor::blackColor()) << "a write drops the colour";
}

TEST(Preferences, ThemeAndContrastChangesDropBothCaches) {
  SimulatedTime time;
  auto& store = *ZEVPreferences_Time::sharedPreferences();
  writeElsewhere("Color", "none");
  int step = 0;
  for (const auto& [notification, isDark, contrast, wantsDark, wantsContrast] :
       casesIn<std::string, bool, std::string, bool, bool>(
           "Targets/Shared/Cases/desktop-changes.txt")) {
    SCOPED_TRACE(++step);
    ZEVIntegerForKey("Value");
    const NSColor fallback = store.isMenubarDark() ? NSColor::whiteColor() : NSColor::blackColor();
    EXPECT_EQ(ZEVColorForKey("Color"), fallback);
    writeElsewhere("Value", step);
    setDesktop(isDark, contrast == "text" ? PropertyList("1") : contrast == "true");
    int posts = 0;
    const auto observation = NSNotificationCenter::defaultCenter().addObserver(
        "VelmoraMenubarThemeChanged",
        [&, dark = wantsDark, raised = wantsContrast](const auto& posted) {
          ++posts;
          EXPECT_TRUE(posted.userInfo.empty());
          EXPECT_EQ(store.isMenubarDark(), dark);
          EXPECT_EQ(store.increaseContrast(), raised);
          EXPECT_EQ(ZEVIntegerForKey("Value"), step);
          EXPECT_EQ(ZEVColorForKey("Color"), dark ? NSColor::whiteColor() : NSColor::blackColor());
        });
    NSDistributedNotificationCenter::defaultCenter().postNotification(notification);
    time.loop.runPending();
    EXPECT_EQ(posts, 1);
  }
}

TEST(Preferences, AreGoneAfterCleanupUntilTheyBeginAgain) {
  ZEVSetIntegerForKey("Value", 5);
  ZEVPreferences_Time::cleanup();
  EXPECT_EQ(ZEVPreferences_Time::sharedPreferences(), nullptr);
  ZEVSetIntegerForKey("Value", 6);
  EXPECT_EQ(ZEVIntegerForKey("Value"), 0);
  EXPECT_EQ(ZEVColorForKey("Time_TextColor-Dark"), NSColor::blackColor());
  ZEVPreferences_Time::begin();
  EXPECT_EQ(ZEVIntegerForKey("Value"), 5);
}

TEST(Preferences, StylesFollowTheBarOnlyWhereTheyAreSeparate) {
  SimulatedTime time;
  ZEVSetIntegerForKey("DropdownTheme", 7);
  ZEVSetIntegerForKey("DropdownTheme-Light", 8);
  ZEVSetIntegerForKey("DropdownTheme-Dark", 9);
  for (const char* variant : {"", "-Light", "-Dark"}) {
    ZEVSetIntegerForKey(std::string("MenubarSkinColor") + variant,
                        ZEVIntegerForKey(std::string("DropdownTheme") + variant) + 10);
  }
  ZEVSetDoubleForKey("MenubarGraphOpacity", 0.25);
  ZEVSetDoubleForKey("MenubarGraphOpacity-DarkMode", 0.75);
  ZEVSetIntegerForKey("MenubarTheme", 1);
  EXPECT_EQ(menubarGraphOpacity(), 1);
  ZEVSetIntegerForKey("MenubarTheme", 3);
  for (const auto& [isDark, areSeparate, theme, barTheme, opacity] :
       casesIn<bool, bool, int64_t, int64_t, double>("Targets/Shared/Cases/bar-styles.txt")) {
    setDesktop(isDark, {});
    NSDistributedNotificationCenter::defaultCenter().postNotification(
        "AppleInterfaceThemeChangedNotification");
    time.loop.runPending();
    ZEVSetBoolForKey("Theme-SeperateStyles", areSeparate);
    EXPECT_EQ(dropdownTheme(), theme) << isDark << areSeparate;
    EXPECT_EQ(menubarSkinColor(), theme + 10);
    EXPECT_EQ(menubarTheme(), barTheme);
    EXPECT_EQ(menubarGraphOpacity(), opacity);
  }
}

TEST(Preferences, ImagesByName) {
  auto& store = *ZEVPreferences_Time::sharedPreferences();
  const auto kept = store.imageNamed("menubar-date");
  kept->setName("renamed");
  EXPECT_EQ(store.imageNamed("menubar-date"), kept);
  EXPECT_EQ(kept->name(), "menubar-date") << "a hit gets its name again";
  store.clearCache();
  EXPECT_NE(store.imageNamed("menubar-date"), kept) << "images live in the cache of values";
}

}  // namespace
