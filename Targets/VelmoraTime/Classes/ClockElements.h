#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/PropertyLists/PropertyList.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"

/// A clock format: an ordered list of elements, each turned into text by itself. Here stand the
/// steps that the walkers of such a list share.
using ClockElements = std::vector<std::string>;

/// The list that a setting holds. Nothing stored is an empty list; a value of another kind raises
/// `std::invalid_argument` that names the key.
ClockElements clockElementsFromSetting(const PropertyList& value, std::string_view key);

/// The formatter's AM/PM marker of a time, cut to one character. Leaves the pattern at "a".
std::string dayPeriodMarker(NSDateFormatter& formatter, const NSDate& date);

/// Weekday names in their stand-alone form: "EEEEE", "EEEE" and "EE" become "ccccc", "cccc", "ccc";
/// "EEE" and "E" stay.
std::string withStandAloneWeekdays(std::string_view element);

/// "aaa" and "aa" replaced by the marker in lower and in upper case, as a quoted literal.
std::string withMarkerLiterals(const std::string& element, const std::string& marker);

inline bool isLiteral(std::string_view element) { return element.starts_with('\''); }

/// One letter for today's weekday: U, M, T, W, R, F, S from Sunday to Saturday.
std::string weekdayLetter();

/// "Today" in the user's language.
std::string relativeDayText();

/// In a list without minutes the second hour element shows the minutes.
class SecondHourRule {
 public:
  explicit SecondHourRule(const ClockElements& elements);

  /// The element to use in the place of `element`, asked for each in order.
  std::string apply(std::string element);

 private:
  bool hasMinutes_;
  bool hasSeenHour_ = false;
};

/// Puts an hour's text on a 12-hour dial, with a leading zero for "hh", in the digits that the text
/// has: beside minutes in others, the bidirectional rules would change their places. Text that is
/// no number counts as 0.
std::string validateHourString(std::string_view text, std::string_view element);

/// Formats one pattern element; hours of a 12-hour clock are validated.
std::string formattedElement(const std::string& element, NSDateFormatter& formatter,
                             const NSDate& date);
