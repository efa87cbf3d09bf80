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
#include "Tests/Targets/SimulatedTime.h"
#include "Tests/Targets/VelmoraTime/ElementCases.h"

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
    for (const ClockPiece& piece : list) {
      switch (piece.kind) {
        case ClockPiece::Kind::Text:
          text += "[" + piece.text + "]";
          break;
        case ClockPiece::Kind::Separator:
          text += piece.isVisible ? piece.text : "_";
          break;
        case ClockPiece::Kind::Moon:
          text += "moon";
          break;
        case ClockPiece::Kind::Calendar:
          text += "leaf";
          break;
      }
    }
    return text;
  }

  std::string layout(const ClockElements& list, int64_t flash = 1) {
    return layout(pieces(list, Saturday, flash));
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
  EXPECT_EQ(layout(list, 1), "[3]:[04]");
  const auto shown = pieces(list);
  const int64_t shownEnd = end;
  EXPECT_EQ(shown[1].point.x, width("3"));
  EXPECT_EQ(shown[2].point.x, width("3") + width(":"));
  for (const int64_t flash : {0, 2, -1}) {
    EXPECT_EQ(layout(list, flash), "[3]_[04]");
    EXPECT_EQ(pieces(list, Saturday, flash)[2].point, shown[2].point);
    EXPECT_EQ(end, shownEnd);
  }
}

TEST_F(ClockDrawing, OnlySeparatorsBehindTheTimeFlash) {
  struct Case {
    ClockElements list;
    const char* flashing;
    const char* steady;
  };
  const Case cases[] = {
      {{"mm", "'.'", "ss", "':'", "d"}, "[04]_[05:21]", "[04.05:21]"},
      {{"h", "' '", "':'"}, "[3 ]_", "[3 :]"},
      {{"a", "':'"}, "[PM]_", "[PM:]"},
      {{"aa", "':'"}, "[P:]", "[P:]"},
      {{"h", "aaa", "':'"}, "[3p]_", "[3p:]"},
      {{"h", ":", "':'"}, "[3::]", "[3::]"},
      {{"h", "w", "':'"}, "[347]_", "[347:]"},
      {{"h", Moon, "':'"}, "[3]moon_", "[3]moon[:]"},
      {{"h", "' : '", "mm"}, "[3 : 04]", "[3 : 04]"},
  };
  for (const auto& [list, flashing, steady] : cases)
    EXPECT_EQ(layout(list, 0), steady);
  setFlashing();
  for (const auto& [list, flashing, steady] : cases)
    EXPECT_EQ(layout(list, 0), flashing);
}

// By hand from the rules of Unicode Annex 9: in a line that starts with a letter read from right to
// left, a time is one number, read from left to right, and everything else goes to its left.
TEST_F(ClockDrawing, AFlashingLineReadFromRightToLeftKeepsItsOrder) {
  struct Case {
    ClockElements list;
    const char* flashing;
    const char* steady;
  };
  const Case cases[] = {
      {{"'א '", "HH", "':'", "mm", "' ב'"}, "[ ב][15]_[04][א ]", "[א 15:04 ב]"},
      {{"'א '", "HH", "' '", "':'", "' '", "mm"}, "[04][ ]_[ ][15][א ]", "[א 15 : 04]"},
      {{"'a '", "HH", "':'", "mm", "' ב'"}, "[a 15]_[04 ][ב]", "[a 15:04 ב]"},
      {{"'א'", "HH", "':'", "mm", "' '", Moon, "' '", "'ב '"},
       "[15]_[04][א][ ]moon[ ][ב][ ]",
       "[א15:04][ ]moon[ ][ב][ ]"},
  };
  for (const auto& [list, flashing, steady] : cases)
    EXPECT_EQ(layoutFromLeft(list, 0), steady);
  setFlashing();
  for (const auto& [list, flashing, steady] : cases)
    EXPECT_EQ(layoutFromLeft(list, 0), flashing);
  // Nothing moves with the phase, and the pieces are told in the order in which they are read.
  EXPECT_EQ(layoutFromLeft(cases[0].list, 1), "[ ב][15]:[04][א ]");
  EXPECT_EQ(layout(cases[0].list, 0), "[א ][15]_[04][ ב]");
  EXPECT_EQ(pieces(cases[0].list, Saturday, 1)[3].point,
            pieces(cases[0].list, Saturday, 0)[3].point);
}

TEST_F(ClockDrawing, OneItemShowsOneDay) {
  // 2026-11-21 is 30 Aban 1405.
  NSLocale::setCurrentLocale("fa_IR");
  NSDateFormatter formatter;
  formatter.setLocale(NSLocale::localeWithLocaleIdentifier("en"));
  EXPECT_EQ(dateString({"d", "__DAY_SUFFIX__", "' '", "MMMM"}, formatter, Saturday), "30th Aban");
  EXPECT_EQ(pieces({Red})[0].day, 30);
  NSLocale::setCurrentLocale("");
  EXPECT_EQ(pieces({Red})[0].day, 21);
}

TEST_F(ClockDrawing, EachElementInEachWalker) {
  const SimulatedTime sunday(utc(2026, 11, 22));
  NSDateFormatter formatter;
  const CityClock city = {formatter, NSTimeZone::systemTimeZone(), {}, {}};
  const NSDate saturday = NSDate::dateWithTimeIntervalSince1970(Saturday);
  for (const auto& [element, inDateString, inMenubar, inCity] : ElementCases) {
    EXPECT_EQ(dateString({element}, formatter, Saturday), inDateString) << element;
    const std::string run = std::string("[") + inDateString + "]";
    EXPECT_EQ(layout({element}), inMenubar != nullptr ? inMenubar : run) << element;
    EXPECT_EQ(cityTimeText({element}, city, saturday), inCity != nullptr ? inCity : inDateString)
        << element;
  }
  EXPECT_EQ(layout({"EEEE", "hh", "'o'", "hh", "a"}), "[Saturday03o04PM]");
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
  NSTimeZone::setSystemTimeZone(std::nullopt);
}

TEST_F(ClockDrawing, TextAndLeafFollowTheSystemsZone) {
  NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Asia/Tokyo"));
  const auto drawn = pieces({"d", "' '", "HH", Red}, utc(2026, 11, 30, 15));
  EXPECT_EQ(drawn[0].text, "1 00");
  EXPECT_EQ(drawn[1].day, 1);
  EXPECT_EQ(pieces({Red}, utc(2026, 11, 30, 14, 59, 59))[0].day, 30);
  NSTimeZone::setSystemTimeZone(std::nullopt);
}

TEST_F(ClockDrawing, TextStandsByItsSize) {
  for (const auto& [size, y] : {std::pair{8, 6.0}, {13, 3.0}, {16, 1.0}}) {
    ZEVSetIntegerForKey("Time_TextSize", size);
    setFlashing();
    for (const ClockPiece& piece : pieces({"h", "':'", "mm"}))
      EXPECT_EQ(piece.point.y, y) << size;
  }
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

TEST_F(ClockDrawing, TheTickStampsTheTimeAndTurnsThePhase) {
  ZEVSetObjectForKey("Time_MenubarFormat", PropertyList::Array{"HH", "':'", "mm", "':'", "ss"});
  setFlashing();
  SimulatedTime time(Saturday + 0.25);
  EXPECT_EQ(view->flashState(), 0);
  for (const auto* text : {"15:04:05", "150406", "15:04:07"}) {
    view->update();
    EXPECT_EQ(view->time(), time.now()) << "not cut to the second";
    RecordingGraphicsContext context;
    const NSCurrentGraphicsContext current(context);
    view->drawAtOffset(0);
    EXPECT_EQ(context.joinedText(), text);
    time.clock.advanceMicroseconds(1'000'000);
  }
}

TEST_F(ClockDrawing, ASettingOfAWrongKindDrawsNothingAndSaysWhy) {
  ZEVSetObjectForKey("Time_MenubarFormat", PropertyList::Array{"HH", 5});
  try {
    view->drawAtOffset(0);
    ADD_FAILURE();
  } catch (const std::invalid_argument& error) {
    EXPECT_NE(std::string(error.what()).find("Time_MenubarFormat"), std::string::npos);
  }
  // The bar goes on, and a mended setting shows at the next draw.
  SimulatedTime time;
  NSMenuBarSlot slot;
  slot.setExtra(extra);
  extra->init(slot, NSBundle());
  time.loop.runPending();
  RecordingGraphicsContext faulty;
  slot.draw(faulty);
  EXPECT_EQ(slot.length(), 20) << "the width from before the start";
  ZEVSetObjectForKey("Time_MenubarFormat", PropertyList::Array{"HH"});
  RecordingGraphicsContext mended;
  slot.draw(mended);
  EXPECT_EQ(mended.joinedText(), "15");
  EXPECT_EQ(slot.length(), width("15"));
  extra->willUnload();
}

}  // namespace
