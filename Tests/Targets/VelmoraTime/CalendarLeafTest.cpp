#include "Targets/VelmoraTime/Classes/CalendarLeaf.h"

#include <gtest/gtest.h>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Tests/Platform/Support/CaseTable.h"
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

constexpr const char* Leaves = "Targets/VelmoraTime/Cases/calendar-leaves.txt";

TEST(CalendarLeaf, HasPaperHeadAndNumber) {
  for (const auto& [type, red, green, blue] :
       casesIn<std::string, double, double, double>(Leaves)) {
    SCOPED_TRACE(type);
    const auto parts = draw({7, 1}, type, October31, true);
    ASSERT_EQ(parts.size(), 3);
    EXPECT_EQ(parts.front().name, "menubar-date");
    EXPECT_EQ(parts.front().rect.origin, (NSPoint{7, 3}));
    EXPECT_EQ(parts.back().name, "menubar-date-31") << "also on a dark bar";
    EXPECT_EQ(parts.back().rect.origin, (NSPoint{7, 3}));
    EXPECT_EQ(parts[1].kind, DrawingRecord::Kind::Path);
    EXPECT_EQ(parts[1].rect, NSMakeRect(8, 16, 15, 4));
    EXPECT_EQ(parts[1].color, NSColor::colorWithDeviceRed(red, green, blue, 1));
  }
  EXPECT_EQ(draw({7, 1}, "___ICON__PLAIN___", October31, true).size(), 2) << "no head";
}

// No picture may spill over the 19 points that the clock leaves for it, or over the bar.
TEST(CalendarLeaf, StaysInsideItsBoxAtEveryScale) {
  for (const double scale : {1.0, 2.0}) {
    for (const auto& [type, red, green, blue] :
         casesIn<std::string, double, double, double>(Leaves)) {
      BitmapSurface surface({40, 22}, scale);
      const NSCurrentGraphicsContext current(surface.context());
      drawCalendarLeaf({10, 0}, type, 31, false);
      const Ink ink = inkOf(surface);
      EXPECT_TRUE(ink.left >= 10 * scale && ink.right < 29 * scale && ink.top >= scale)
          << type << " at scale " << scale;
      EXPECT_GT(ink.area, 150 * scale * scale) << type << " at scale " << scale;
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
  for (const auto& [isDark, isMenuDown, isWhite] :
       {std::tuple{false, false, false}, {false, true, true}, {true, false, true}}) {
    VelmoraTimeMenuExtraView view;
    view.loadConfig();
    view.setIsMenuDown(isMenuDown);
    if (isDark) {
      ZEVPreferences_Time::cleanup();
      setPreferenceOverride("AppleInterfaceStyle", "Dark", ".GlobalPreferences");
      ZEVPreferences_Time::begin();
    }
    int64_t offset = 0;
    const auto pieces = view.clockPieces(offset, October31, 1, {"___ICON__RED___"});
    EXPECT_EQ(pieces[0].isWhite, isWhite);
  }
}

}  // namespace
