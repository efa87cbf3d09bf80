#pragma once

#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Targets/VelmoraTime/Classes/ClockElements.h"

/// One pass over a clock format, in which each element is turned into text. Main thread only.
class ClockTexts {
 public:
  /// `time` is in seconds since 1970. The formatter comes with its zone set; it must outlive the
  /// pass, which changes its pattern.
  ClockTexts(ClockWalker walker, const ClockElements& elements, NSDateFormatter& formatter,
             double time);

  /// The text of an element, asked for each in order; none of one that is a picture. One that is a
  /// lone apostrophe raises `std::out_of_range`.
  std::string textOf(const std::string& element);

  /// Whether the last date pattern ended in an hour, minutes or a marker.
  bool isAfterTime() const { return isAfterTime_; }

 private:
  std::string textOfPattern(const std::string& original);

  ClockWalker walker_;
  NSDateFormatter& formatter_;
  double time_;
  NSDate date_;
  std::string marker_;  ///< AM or PM, cut to one character.
  SecondHourRule secondHour_;
  bool isAfterTime_ = false;
};

/// The text of a format list for a time in seconds since 1970. The formatter comes with its zone
/// set; its pattern is changed. An element that is one lone apostrophe raises `std::out_of_range`.
std::string dateString(const ClockElements& elements, NSDateFormatter& formatter, double time);

/// AM or PM at a date, cut to one character. Changes the formatter's pattern.
std::string dayPeriodMarker(NSDateFormatter& formatter, const NSDate& date);

/// One letter for today's weekday in the system's zone, whatever the time that is shown.
std::string weekdayLetter();

/// Puts an hour's text on a 12-hour dial, with a leading zero for "hh", in the digits that the text
/// has: beside minutes in others, the bidirectional rules would change their places. Text that is
/// no number counts as 0.
std::string validateHourString(std::string_view text, std::string_view element);
