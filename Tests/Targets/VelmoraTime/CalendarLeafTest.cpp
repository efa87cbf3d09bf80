#include "Targets/VelmoraTime/Classes/CalendarLeaf.h"

#include <gtest/gtest.h>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Tests/Platform/Support/Pixels.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

constexpr double November1 = utc(2026, 11, 1, 12);
constexpr double October31 = utc(2026, 10, 31, 12);

std::vector<DrawingRecord> draw(NSPoint point, std::string_view type, double time, bool white) {
  RecordingGraphicsContext context;
  const NSCurrentGraphicsContext current(context);
  ZEVMenuExtraClockView_Time::drawCalendarAtPoint(
      point, type, NSDate::dateWithTimeIntervalSince1970(time), white);
  return context.records();
}

struct Leaf {
  const char* type;
  std::optional<NSColor> head;
};

constexpr Leaf Leaves[] = {
    {"___ICON__RED___", NSColor::colorWithDeviceRed(1.0, 0.254, 0.254, 1)},
    {"___ICON__BLUE___", NSColor::colorWithDeviceRed(0.098, 0.58, 0.941, 1)},
    {"___ICON__GEAPHITE___", NSColor::colorWithDeviceRed(0.568, 0.639, 0.768, 1)},
    {"___ICON__GREEN___", NSColor::colorWithDeviceRed(0.513, 0.8, 0.113, 1)},
    {"___ICON__ORANGE___", NSColor::colorWithDeviceRed(1.0, 0.462, 0.168, 1)},
    {"___ICON__PINK___", NSColor::colorWithDeviceRed(1.0, 0.305, 1.0, 1)},
    {"___ICON__BLACK___", NSColor::colorWithDeviceWhite(0.2, 1)},
    {"___ICON__PLAIN___", std::nullopt},
};

TEST(CalendarLeaf, HasPaperHeadAndNumber) {
  for (const auto& [type, head] : Leaves) {
    SCOPED_TRACE(type);
    const auto parts = draw({7, 1}, type, October31, true);
    ASSERT_EQ(parts.size(), head ? 3 : 2);
    EXPECT_EQ(parts.front().name, "menubar-date");
    EXPECT_EQ(parts.front().rect.origin, (NSPoint{7, 3}));
    EXPECT_EQ(parts.back().name, "menubar-date-31") << "also on a dark bar";
    EXPECT_EQ(parts.back().rect.origin, (NSPoint{7, 3}));
    if (!head) continue;
    EXPECT_EQ(parts[1].kind, DrawingRecord::Kind::Path);
    EXPECT_EQ(parts[1].rect, NSMakeRect(8, 16, 15, 4));
    EXPECT_EQ(parts[1].color, *head);
  }
}

// No picture may spill over the 19 points that the clock leaves for it, or over the bar.
TEST(CalendarLeaf, StaysInsideItsBoxAtEveryScale) {
  for (const double scale : {1.0, 2.0}) {
    for (const Leaf& leaf : Leaves) {
      BitmapSurface surface({40, 22}, scale);
      const NSCurrentGraphicsContext current(surface.context());
      drawCalendarLeaf({10, 0}, leaf.type, 31, false);
      const Ink ink = inkOf(surface);
      EXPECT_TRUE(ink.left >= 10 * scale && ink.right < 29 * scale && ink.top >= scale)
          << leaf.type << " at scale " << scale;
      EXPECT_GT(ink.area, 150 * scale * scale) << leaf.type << " at scale " << scale;
    }
  }
}

TEST(TransparentLeaf, HasWhitePartsOnADarkBar) {
  for (const bool white : {false, true}) {
    const auto parts = draw({7, 1}, "___ICON__TRANSPARENT___", November1, white);
    ASSERT_EQ(parts.size(), 2) << "no head";
    EXPECT_EQ(parts[0].name, white ? "menubar-date-transparent-white" : "menubar-date-transparent");
    EXPECT_EQ(parts[0].rect.origin, (NSPoint{7, 3}));
    EXPECT_EQ(parts[1].name, white ? "menubar-date-1-white" : "menubar-date-1") << "never padded";
    EXPECT_EQ(parts[1].rect.origin, (NSPoint{7, 4}));
  }
}

TEST(CalendarLeafPlace, RoundsThePicturesButNotTheHead) {
  const auto parts = draw({7.25, 0.25}, "___ICON__RED___", October31, false);
  ASSERT_EQ(parts.size(), 3);
  EXPECT_EQ(parts[0].rect.origin, (NSPoint{7, 2.25}));
  EXPECT_EQ(parts[1].rect, NSMakeRect(8.25, 15.25, 15, 4));
  EXPECT_EQ(parts[2].rect.origin, (NSPoint{7, 2.25}));
  EXPECT_EQ(draw({7.5, 0}, "___ICON__RED___", October31, false)[0].rect.origin.x, 8);
}

TEST(CalendarLeafDay, IsWhiteOnADarkBarAndUnderAnOpenMenu) {
  struct Case {
    bool isDark, isMenuDown, isWhite;
  };
  for (const auto& [isDark, isMenuDown, isWhite] :
       {Case{false, false, false}, {false, true, true}, {true, false, true}}) {
    VelmoraTimeMenuExtraView view;
    view.loadConfig();
    view.setIsMenuDown(isMenuDown);
    if (isDark) {
      ZEVPreferences_Time::sharedPreferences();
      SimulatedTime time;
      setPreferenceOverride("AppleInterfaceStyle", "Dark", ".GlobalPreferences");
      NSDistributedNotificationCenter::defaultCenter().postNotification(
          "AppleInterfaceThemeChangedNotification");
      time.loop.runPending();
    }
    int64_t offset = 0;
    const auto pieces = view.clockPieces(offset, October31, 1, {"___ICON__RED___"});
    EXPECT_EQ(pieces[0].isWhite, isWhite);
  }
}

}  // namespace
