#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Platform/AppKit/Drawing/RecordingGraphicsContext.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/ClockTexts.h"
#include "Targets/VelmoraTime/Classes/VelmoraTime.h"
#include "Targets/VelmoraTime/Classes/VelmoraTimeMenuExtraView.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Targets/VelmoraTime/Dropdown/CityTimeText.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

constexpr const char* Red = "___ICON__RED___";
constexpr const char* Moon = "___ICON__MOON__";

class ClockDrawing : public testing::Test {
 protected:
  std::vector<ClockPiece> pieces(const ClockElements& list, double time = Saturday,
                                 int64_t flash = 1) {
    end = start;
    return view->clockPieces(end, time, flash, list);
  }

  /// The pieces as text: runs in brackets, a shown separator as it is, a hidden one as "_", the
  /// icons as "moon" and "leaf".
  static std::string layout(const std::vector<ClockPiece>& list) {
    std::string text;
    for (const auto& [kind, point, shown, isVisible, day, isWhite] : list) {
      if (kind == ClockPiece::Kind::Text) text += "[" + shown + "]";
      if (kind == ClockPiece::Kind::Separator) text += isVisible ? shown : "_";
      if (kind == ClockPiece::Kind::Moon) text += "moon";
      if (kind == ClockPiece::Kind::Calendar) text += "leaf";
    }
    return text;
  }

  /// The same in the order in which they stand from left to right.
  std::string layoutFromLeft(const ClockElements& list, int64_t flash) {
    auto sorted = pieces(list, Saturday, flash);
    std::sort(sorted.begin(), sorted.end(),
              [](const ClockPiece& a, const ClockPiece& b) { return a.point.x < b.point.x; });
    return layout(sorted);
  }

  /// Whole points, as every width in the bar.
  double width(const std::string& text) {
    return std::ceil(sizeWithAttributes(text, view->percentageAttributes("text")).width);
  }

  void setFlashing() { ZEVSetBoolForKey("Time_MenubarFlashSeperators", true); }

  std::shared_ptr<VelmoraTime> extra = std::make_shared<VelmoraTime>();
  std::shared_ptr<VelmoraTimeMenuExtraView> view =
      make<VelmoraTimeMenuExtraView>(NSMakeRect(0, 0, 20, 22), *extra);
  int64_t start = 0;
  int64_t end = 0;
};

TEST_F(ClockDrawing, AnEmptyListTakesNoPlace) {
  start = 7;
  for (const ClockElements& list : {ClockElements{}, {"", "''"}}) {
    EXPECT_TRUE(pieces(list).empty()) << "an empty text is no piece";
    EXPECT_EQ(end, 7);
  }
}

TEST_F(ClockDrawing, IconsKeepTheirGaps) {
  // A piece at the very start has no gap before it, and text behind an icon none of its own.
  auto drawn = pieces({Moon, "HH"});
  ASSERT_EQ(drawn.size(), 2);
  EXPECT_EQ(drawn[0].point, (NSPoint{0, 3}));
  EXPECT_EQ(drawn[1].point, (NSPoint{20, 3}));
  EXPECT_EQ(end, 20 + width("15"));

  drawn = pieces({"HH", Moon, Red, "HH"});
  ASSERT_EQ(drawn.size(), 4);
  const double moon = width("15") + 4;
  EXPECT_EQ(drawn[1].point, (NSPoint{moon, 3}));
  EXPECT_EQ(drawn[2].point, (NSPoint{moon + 24, 0}));
  EXPECT_EQ(drawn[3].point, (NSPoint{moon + 24 + 19, 3}));

  start = 5;
  drawn = pieces({Red});
  EXPECT_EQ(drawn[0].point, (NSPoint{9, 0}));
  EXPECT_EQ(end, 28);
  start = 0;
  EXPECT_THROW(pieces({"'"}), std::out_of_range);
}

TEST_F(ClockDrawing, AHiddenSeparatorKeepsItsPlace) {
  setFlashing();
  const ClockElements list = {"h", "':'", "mm"};
  const auto shown = pieces(list);
  const int64_t shownEnd = end;
  EXPECT_EQ(layout(shown), "[3]:[04]");
  EXPECT_EQ(shown[1].point.x, width("3"));
  EXPECT_EQ(shown[2].point.x, width("3") + width(":"));
  for (const int64_t flash : {0, 2, -1}) {
    const auto hidden = pieces(list, Saturday, flash);
    EXPECT_EQ(layout(hidden), "[3]_[04]");
    EXPECT_EQ(hidden[2].point, shown[2].point);
    EXPECT_EQ(end, shownEnd);
  }
}

TEST_F(ClockDrawing, OnlySeparatorsBehindTheTimeFlash) {
  for (const auto& [list, flashing, steady] : casesIn<ClockElements, std::string, std::string>(
           "Targets/VelmoraTime/Cases/bar-lines.txt")) {
    ZEVSetBoolForKey("Time_MenubarFlashSeperators", false);
    EXPECT_EQ(layoutFromLeft(list, 0), steady);
    setFlashing();
    EXPECT_EQ(layoutFromLeft(list, 0), flashing);
  }
}

TEST_F(ClockDrawing, AFlashingLineReadFromRightToLeftKeepsItsOrder) {
  setFlashing();
  const ClockElements list = {"'א '", "HH", "':'", "mm", "' ב'"};
  EXPECT_EQ(layoutFromLeft(list, 1), "[ ב][15]:[04][א ]");
  EXPECT_EQ(layout(pieces(list, Saturday, 0)), "[א ][15]_[04][ ב]") << "told as they are read";
  EXPECT_EQ(pieces(list, Saturday, 1)[3].point, pieces(list, Saturday, 0)[3].point);
  NSLocale::setCurrentLocale("ar_EG");
  ZEVDateAndTimeUtilities::cleanup();
  EXPECT_EQ(layoutFromLeft({"a", "':'", "'ב'"}, 0), "[ב]_[م]") << "all in one run";
}

TEST_F(ClockDrawing, OneItemShowsOneDay) {
  // 2026-11-21 is 30 Aban 1405.
  NSLocale::setCurrentLocale("fa_IR");
  NSDateFormatter formatter;
  formatter.setLocale(NSLocale::localeWithLocaleIdentifier("en"));
  EXPECT_EQ(dateString({"d", "__DAY_SUFFIX__", "' '", "MMMM"}, formatter, Saturday), "30th Aban");
  EXPECT_EQ(pieces({Red})[0].day, 30);
}

TEST_F(ClockDrawing, EachElementInEachWalker) {
  const SimulatedTime sunday(utc(2026, 11, 22));
  NSDateFormatter formatter;
  const CityClock city = {formatter, NSTimeZone::systemTimeZone(), {}, {}};
  const NSDate saturday = NSDate::dateWithTimeIntervalSince1970(Saturday);
  for (const auto& [element, inDateString, inBar, inCity] :
       casesIn<std::string, std::string, std::string, std::string>(
           "Targets/VelmoraTime/Cases/elements.txt")) {
    EXPECT_EQ(dateString({element}, formatter, Saturday), inDateString) << element;
    EXPECT_EQ(layout(pieces({element})), inBar) << element;
    EXPECT_EQ(cityTimeText({element}, city, saturday), inCity) << element;
  }
}

// Here the week turns at midnight UTC, wherever the clock stands.
TEST_F(ClockDrawing, WeekTurnsAtUtcMidnight) {
  ZEVSetIntegerForKey("Time_WeekNumberFormat", 1);
  const SimulatedTime now(utc(2027, 1, 4));
  for (const char* zone : {"Pacific/Kiritimati", "Pacific/Pago_Pago"}) {
    NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName(zone));
    EXPECT_EQ(pieces({"w"}, utc(2027, 1, 3, 23, 59, 59))[0].text, "53") << zone;
    EXPECT_EQ(pieces({"w"}, utc(2027, 1, 4))[0].text, "1") << zone;
  }
}

TEST_F(ClockDrawing, TextAndLeafFollowTheSystemsZone) {
  NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Asia/Tokyo"));
  const auto drawn = pieces({"d", "' '", "HH", Red}, utc(2026, 11, 30, 15));
  EXPECT_EQ(drawn[0].text, "1 00");
  EXPECT_EQ(drawn[1].day, 1);
  EXPECT_EQ(pieces({Red}, utc(2026, 11, 30, 14, 59, 59))[0].day, 30);
}

TEST_F(ClockDrawing, TextStandsByItsSize) {
  setFlashing();
  std::string heights;
  for (int size = 7; size <= 17; ++size) {
    ZEVSetIntegerForKey("Time_TextSize", size);
    const auto drawn = pieces({"h", "':'", "mm"});
    for (const ClockPiece& piece : drawn)
      EXPECT_EQ(piece.point.y, drawn[0].point.y) << size;
    heights += std::to_string(std::lround(drawn[0].point.y)) + " ";
  }
  EXPECT_EQ(heights, "3 6 5 4 4 3 3 3 2 1 3 ") << "sizes that are none stand like 13";
}

TEST_F(ClockDrawing, ARunIsDrawnInOneCall) {
  ZEVSetObjectForKey("Time_TextColor", "0 0 1 1");
  RecordingGraphicsContext context;
  {
    const NSCurrentGraphicsContext current(context);
    EXPECT_EQ(view->drawTimeAtOffset(2, Saturday, 0, {"EE", "' '", "HH", ":", "mm"}),
              2 + width("Sat 15:04"));
    setFlashing();
    view->drawTimeAtOffset(0, Saturday, 0, {"h", "':'", "mm"});
  }
  ASSERT_EQ(context.records().size(), 3) << "a hidden separator is not drawn";
  const DrawingRecord& run = context.records()[0];
  EXPECT_EQ(run.name, "Sat 15:04");
  EXPECT_EQ(run.rect.origin, (NSPoint{2, 3}));
  EXPECT_EQ(run.color, NSColor::colorWithDeviceRed(0, 0, 1, 1));
  EXPECT_TRUE(run.hasShadow);
  EXPECT_EQ(context.joinedText(), "Sat 15:04304");
}

// The bar goes on, the log says why, and a mended setting shows at the next draw.
TEST_F(ClockDrawing, ASettingOfAWrongKindDrawsNothingAndSaysWhy) {
  ZEVSetObjectForKey("Time_MenubarFormat", PropertyList::Array{"HH", 5});
  EXPECT_THROW(view->drawAtOffset(0), std::invalid_argument);
  SimulatedTime time;
  NSMenuBarSlot slot;
  slot.setExtra(extra);
  extra->init(slot, NSBundle());
  time.loop.runPending();
  RecordingGraphicsContext context;
  testing::internal::CaptureStderr();
  slot.draw(context);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("Time_MenubarFormat"), std::string::npos);
  EXPECT_EQ(slot.length(), 20) << "the width from before the start";
  ZEVSetObjectForKey("Time_MenubarFormat", PropertyList::Array{"HH"});
  slot.draw(context);
  EXPECT_EQ(context.joinedText(), "15");
  EXPECT_EQ(slot.length(), width("15"));
  extra->willUnload();
}

}  // namespace
