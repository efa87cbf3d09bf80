#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// A clock format: an ordered list of elements, each turned into text (`ClockTexts`) or into a
/// picture by itself. The vocabulary stands here; nothing else knows an element by its name.
using ClockElements = std::vector<std::string>;

/// Who walks a list: `dateString`, and the bar, which adds pictures and flashing separators. The
/// world clocks' rows have a walk of their own (`CityElementKind`).
enum class ClockWalker { DateString, Menubar };

/// What a walker makes of an element.
enum class ElementKind {
  Pattern,  ///< A date pattern or quoted literal, with the AM/PM markers replaced in it.
  WeekdayLetter,
  Today,
  DaySuffix,
  DaySuffixUpper,
  FuzzyClock,         ///< In the wording of the utilities.
  MenubarFuzzyClock,  ///< In that of the bar.
  LocalWeek,          ///< The week of the wall clock's date in the formatter's zone.
  UniversalWeek,      ///< The week of the date in UTC.
  Separator,
  Moon,
  CalendarLeaf,
};

/// What a world clock's row makes of an element.
enum class CityElementKind {
  Pattern,  ///< A date pattern or quoted literal, with nothing replaced in it.
  WeekdayLetter,
  LowercaseMarker,  ///< AM or PM, cut to one character.
  UppercaseMarker,
  RelativeDay,     ///< The day there, seen from here.
  DaySuffix,       ///< Of the day there.
  DaySuffixUpper,  ///< Of the day there.
  FuzzyClock,
  ZoneAbbreviation,  ///< In the locale of the people there, where the own one has none.
};

/// The rules about the time of day in which an element takes part.
struct TimeRoles {
  bool isBareTime = false;      ///< May stand in the format of a bare time.
  bool isHour = false;          ///< Makes that format complete, with minutes.
  bool isMinutes = false;       ///< Lets every hour of the list stay one.
  bool turnsToMinutes = false;  ///< As the second hour of a list without minutes.
  bool isOnDial = false;        ///< Its text goes on a 12-hour dial.
};

/// One entry of the vocabulary.
struct ClockElement {
  std::string_view name;
  bool isPrefix = false;  ///< The name is how the element begins; else it is all of it.
  ElementKind inDateString = ElementKind::Pattern;
  ElementKind inMenubar = ElementKind::Pattern;
  CityElementKind inCity = CityElementKind::Pattern;
  TimeRoles roles;
};

/// All of them; of two that fit, the first counts. What is not among them is a pattern.
std::span<const ClockElement> clockVocabulary();

ElementKind kindOfElement(std::string_view element, ClockWalker walker);
CityElementKind cityKindOfElement(std::string_view element);
TimeRoles timeRolesOfElement(std::string_view element);

/// Between apostrophes, which are not shown.
inline bool isLiteral(std::string_view element) { return element.starts_with('\''); }

/// Every text but a lone apostrophe, from which a walker cannot take both ends of a literal.
bool isClockElement(std::string_view text);

/// The list that a setting holds. Nothing stored is an empty list; a value of another kind raises
/// `std::invalid_argument` that names the key.
ClockElements clockElementsFromSetting(const PropertyList& value, std::string_view key);

/// Weekday names in their stand-alone form: "EEEEE", "EEEE" and "EE" become "ccccc", "cccc", "ccc";
/// "EEE" and "E" stay.
std::string withStandAloneWeekdays(std::string_view element);

/// "aaa" and "aa" replaced by the marker in lower and in upper case, as a quoted literal.
std::string withMarkerLiterals(const std::string& element, const std::string& marker);

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

/// Whether a separator behind this pattern belongs to the time, and may flash.
bool endsTime(std::string_view pattern);

/// The format of a bare time: the time part of a list, from its first time element to the first
/// foreign one and without a trailing literal, if it has an hour and two digits of minutes; else
/// the current locale's short time.
ClockElements bareTimeFormat(const ClockElements& elements);
