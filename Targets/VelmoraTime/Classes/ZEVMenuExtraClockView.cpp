#include "Targets/VelmoraTime/Classes/ZEVMenuExtraClockView.h"

#include <algorithm>
#include <cmath>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/CalendarLeaf.h"
#include "Targets/VelmoraTime/Classes/ClockLine.h"
#include "Targets/VelmoraTime/Classes/FuzzyClock.h"
#include "Targets/VelmoraTime/Classes/NSDateOrdinalDays.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

namespace {

constexpr int64_t TextBottom = 3;
constexpr int64_t IconGap = 4;
constexpr double MoonBottom = 3;
constexpr int64_t MoonAdvance = 20;
constexpr int64_t CalendarAdvance = 19;

/// Gathers a line of text with its flashing separators, and places everything in its turn.
class PieceLayout {
 public:
  PieceLayout(int64_t offset, const NSTextAttributes& attributes)
      : offset_(offset),
        attributes_(attributes),
        textY_(static_cast<double>(
            ZEVPreferences_Time::sharedPreferences()->offsetForFont("Time_TextSize") +
            TextBottom)) {}

  void append(std::string_view text) {
    if (text.empty()) return;
    if (line_.empty() || line_.back().kind != ClockPiece::Kind::Text) {
      line_.push_back({ClockPiece::Kind::Text, {}, {}});
    }
    line_.back().text.append(text);
  }

  void appendSeparator(const std::string& text, bool isVisible) {
    line_.push_back({ClockPiece::Kind::Separator, {}, text, isVisible});
  }

  void flush() {
    std::vector<LinePart> parts = partsFromLeftToRight(line_);
    for (LinePart& part : parts) {
      part.piece.point = {static_cast<double>(offset_), textY_};
      offset_ += textWidth(part.piece.text);
    }
    // They are told, and drawn, in the order in which they are read.
    std::sort(parts.begin(), parts.end(),
              [](const LinePart& a, const LinePart& b) { return a.start < b.start; });
    for (LinePart& part : parts)
      pieces_.push_back(std::move(part.piece));
    line_.clear();
  }

  ClockPiece& placeIcon(ClockPiece::Kind kind, double y, int64_t advance) {
    flush();
    // A piece at the very start has no gap before it.
    const int64_t x = offset_ > 0 ? offset_ + IconGap : offset_;
    offset_ = x + advance;
    pieces_.push_back({kind, {static_cast<double>(x), y}, {}});
    return pieces_.back();
  }

  int64_t offset() const { return offset_; }
  std::vector<ClockPiece> takePieces() { return std::move(pieces_); }

 private:
  int64_t textWidth(std::string_view text) const {
    return static_cast<int64_t>(std::ceil(sizeWithAttributes(text, attributes_).width));
  }

  int64_t offset_;
  const NSTextAttributes& attributes_;
  double textY_;
  std::vector<ClockPiece> line_;
  std::vector<ClockPiece> pieces_;
};

/// Whether a separator behind this pattern belongs to the time.
bool endsTimeElement(std::string_view element) {
  return element.ends_with('a') || element.ends_with('h') || element.ends_with('H') ||
         element.ends_with('m');
}

}  // namespace

std::string ZEVMenuExtraClockView_Time::week(double time) const {
  const double utc = time - NSTimeZone::defaultTimeZone().secondsFromGMT();
  return ZEVDateAndTimeUtilities::sharedUtilities().week(utc);
}

std::string ZEVMenuExtraClockView_Time::nameForHour(int64_t hour) const {
  return fuzzyHourName(hour);
}

std::string ZEVMenuExtraClockView_Time::fuzzyClock(double time) const {
  const NSCalendar& calendar = ZEVDateAndTimeUtilities::sharedUtilities().currentCalendar();
  const NSDate date = NSDate::dateWithTimeIntervalSince1970(time);
  return fuzzyClockPhrase(calendar.component(NSCalendarUnitHour, date),
                          calendar.component(NSCalendarUnitMinute, date),
                          {localizedKey("twenty five past %@"), localizedKey("twenty five to %@"),
                           [this](int64_t hour) { return nameForHour(hour); }});
}

std::vector<ClockPiece> ZEVMenuExtraClockView_Time::clockPieces(int64_t& offset, double time,
                                                                int64_t flash,
                                                                const ClockElements& components) {
  const NSDate date = NSDate::dateWithTimeIntervalSince1970(time);
  NSDateFormatter& formatter = ZEVDateAndTimeUtilities::sharedUtilities().dateFormatter();
  formatter.setTimeZone(NSTimeZone::systemTimeZone());
  const std::string marker = dayPeriodMarker(formatter, date);
  const bool isFlashing = ZEVBoolForKey("Time_MenubarFlashSeperators");
  SecondHourRule secondHour(components);
  PieceLayout layout(offset, percentageAttributes("text"));
  bool isAfterTime = false;

  for (const std::string& component : components) {
    if (component == "__DAY_MTWRFSU__") {
      layout.append(weekdayLetter());
    } else if (component == "__RELATIVE_DAY__") {
      layout.append(relativeDayText());
    } else if (component == "__DAY_SUFFIX__") {
      layout.append(ordinalSuffix(date));
    } else if (component == "__DAY_SUFFIX_UPPER__") {
      layout.append(uppercaseString(ordinalSuffix(date)));
    } else if (component.starts_with("FUZZY")) {
      layout.append(fuzzyClock(time));
    } else if (component.starts_with("___ICON__MOON__")) {
      layout.placeIcon(ClockPiece::Kind::Moon, MoonBottom, MoonAdvance);
    } else if (component.starts_with("___ICON")) {
      ClockPiece& leaf = layout.placeIcon(ClockPiece::Kind::Calendar, 0, CalendarAdvance);
      leaf.text = component;
      leaf.day = calendarLeafDay(date);
      leaf.isWhite = isMenuDown() || ZEVPreferences_Time::sharedPreferences()->isMenubarDark();
    } else if (component == "':'" || component == "'.'") {
      const std::string separator = component.substr(1, 1);
      if (isFlashing && isAfterTime) {
        layout.appendSeparator(separator, flash == 1);
      } else {
        layout.append(separator);
      }
    } else {
      std::string element = withMarkerLiterals(withStandAloneWeekdays(component), marker);
      if (element == "w") {
        element = "'" + week(time + NSTimeZone::defaultTimeZone().secondsFromGMT()) + "'";
      }
      if (isLiteral(element)) {
        layout.append(stringByDroppingFirstAndLast(element));
        continue;
      }
      element = secondHour.apply(std::move(element));
      isAfterTime = endsTimeElement(element);
      layout.append(formattedElement(element, formatter, date));
    }
  }
  layout.flush();
  offset = layout.offset();
  return layout.takePieces();
}

int64_t ZEVMenuExtraClockView_Time::drawTimeAtOffset(int64_t offset, double time, int64_t flash,
                                                     const ClockElements& components) {
  const NSTextAttributes& attributes = percentageAttributes("text");
  for (const ClockPiece& piece : clockPieces(offset, time, flash, components)) {
    switch (piece.kind) {
      case ClockPiece::Kind::Text:
      case ClockPiece::Kind::Separator:
        if (piece.isVisible) drawAtPointWithAttributes(piece.text, piece.point, attributes);
        break;
      case ClockPiece::Kind::Moon:
        if (const auto image = moonImage()) image->drawAtPoint(piece.point);
        break;
      case ClockPiece::Kind::Calendar:
        drawCalendarLeaf(piece.point, piece.text, piece.day, piece.isWhite);
        break;
    }
  }
  return offset;
}

void ZEVMenuExtraClockView_Time::drawCalendarAtPoint(NSPoint point, std::string_view type,
                                                     const NSDate& date, bool white) {
  drawCalendarLeaf(point, type, calendarLeafDay(date), white);
}
