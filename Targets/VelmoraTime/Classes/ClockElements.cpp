#include "Targets/VelmoraTime/Classes/ClockElements.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"

namespace {

using enum ElementKind;

constexpr TimeRoles DialHour = {
    .isBareTime = true, .isHour = true, .turnsToMinutes = true, .isOnDial = true};
constexpr TimeRoles PaddedHour = {.isBareTime = true, .isHour = true, .turnsToMinutes = true};
constexpr TimeRoles PlainHour = {.isBareTime = true, .isHour = true};
constexpr TimeRoles PaddedMinutes = {.isBareTime = true, .isMinutes = true};
constexpr TimeRoles PlainMinutes = {.isMinutes = true};
constexpr TimeRoles OtherTime = {.isBareTime = true};

/// What a world clock's row makes of most elements.
constexpr CityElementKind CityPattern = CityElementKind::Pattern;

constexpr ClockElement Vocabulary[] = {
    // Name, whether a prefix, what `dateString` makes of it, what the bar, what a city's row, the
    // time of day.
    {"__DAY_MTWRFSU__", false, WeekdayLetter, WeekdayLetter, CityElementKind::WeekdayLetter, {}},
    {"__RELATIVE_DAY__", false, Today, Today, CityElementKind::RelativeDay, {}},
    {"__DAY_SUFFIX__", false, DaySuffix, DaySuffix, CityElementKind::DaySuffix, {}},
    {"__DAY_SUFFIX_UPPER__",
     false,
     DaySuffixUpper,
     DaySuffixUpper,
     CityElementKind::DaySuffixUpper,
     {}},
    {"FUZZY", true, FuzzyClock, MenubarFuzzyClock, CityElementKind::FuzzyClock, {}},
    {"___ICON__MOON__", true, Pattern, Moon, CityPattern, {}},
    {"___ICON", true, Pattern, CalendarLeaf, CityPattern, {}},
    {"':'", false, Pattern, Separator, CityPattern, {}},
    {"'.'", false, Pattern, Separator, CityPattern, {}},
    {"w", false, LocalWeek, UniversalWeek, CityPattern, {}},
    {"zzz", false, Pattern, Pattern, CityElementKind::ZoneAbbreviation, {}},
    {"h", false, Pattern, Pattern, CityPattern, DialHour},
    {"hh", false, Pattern, Pattern, CityPattern, DialHour},
    {"H", false, Pattern, Pattern, CityPattern, PlainHour},
    {"HH", false, Pattern, Pattern, CityPattern, PaddedHour},
    {"m", false, Pattern, Pattern, CityPattern, PlainMinutes},
    {"mm", false, Pattern, Pattern, CityPattern, PaddedMinutes},
    {"ss", false, Pattern, Pattern, CityPattern, OtherTime},
    {"a", false, Pattern, Pattern, CityPattern, OtherTime},
    {"aa", false, Pattern, Pattern, CityElementKind::UppercaseMarker, OtherTime},
    {"aaa", false, Pattern, Pattern, CityElementKind::LowercaseMarker, OtherTime},
};

const ClockElement& entryOf(std::string_view element) {
  static constexpr ClockElement AnyPattern;
  const auto* const found =
      std::find_if(std::begin(Vocabulary), std::end(Vocabulary), [&](const ClockElement& entry) {
        return entry.isPrefix ? element.starts_with(entry.name) : element == entry.name;
      });
  return found != std::end(Vocabulary) ? *found : AnyPattern;
}

/// Whether any element has a role.
bool hasRole(const ClockElements& elements, bool TimeRoles::*role) {
  return std::any_of(elements.begin(), elements.end(), [role](const std::string& element) {
    return timeRolesOfElement(element).*role;
  });
}

ClockElements timePart(const ClockElements& elements) {
  ClockElements kept;
  for (const std::string& element : elements) {
    const bool isTime = timeRolesOfElement(element).isBareTime;
    const bool hasStarted = isTime || !kept.empty();
    if (!hasStarted) continue;
    if (!isTime && element.find('\'') == std::string::npos) break;
    kept.push_back(element);
  }
  if (!kept.empty() && isLiteral(kept.back())) kept.pop_back();
  return kept;
}

ClockElements timeFormatOfLocale() {
  NSDateFormatter formatter;
  formatter.setDateStyle(NSDateFormatterStyle::None);
  formatter.setTimeStyle(NSDateFormatterStyle::Short);
  const std::string pattern = formatter.dateFormat();
  if (pattern.find('H') != std::string::npos) return {"H", "':'", "mm"};
  return {pattern.find("hh") != std::string::npos ? "hh" : "h", "':'", "mm ", "a"};
}

}  // namespace

std::span<const ClockElement> clockVocabulary() { return Vocabulary; }

ElementKind kindOfElement(std::string_view element, ClockWalker walker) {
  const ClockElement& entry = entryOf(element);
  return walker == ClockWalker::Menubar ? entry.inMenubar : entry.inDateString;
}

CityElementKind cityKindOfElement(std::string_view element) { return entryOf(element).inCity; }

TimeRoles timeRolesOfElement(std::string_view element) { return entryOf(element).roles; }

bool isClockElement(std::string_view text) { return text != "'"; }

ClockElements clockElementsFromSetting(const PropertyList& value, std::string_view key) {
  if (value.isNull()) return {};
  const auto fail = [&](const std::string& what) {
    throw std::invalid_argument("the setting " + std::string(key) +
                                " must be a list of texts, not " + what);
  };
  if (value.array() == nullptr) fail(std::string(value.kindName()));
  ClockElements elements;
  for (const PropertyList& item : *value.array()) {
    if (item.string() == nullptr) fail("a list with " + std::string(item.kindName()) + " in it");
    elements.push_back(*item.string());
  }
  return elements;
}

std::string withStandAloneWeekdays(std::string_view element) {
  if (element.find("EE") == std::string_view::npos) return std::string(element);
  std::string result = stringByReplacingOccurrences(element, "EEEEE", "ccccc");
  result = stringByReplacingOccurrences(result, "EEEE", "cccc");
  // "EEE" stays as it is, though it holds an "EE".
  const auto pieces = componentsSeparatedByString(result, "EEE");
  result = stringByReplacingOccurrences(pieces.front(), "EE", "ccc");
  for (size_t index = 1; index < pieces.size(); ++index) {
    result += "EEE" + stringByReplacingOccurrences(pieces[index], "EE", "ccc");
  }
  return result;
}

std::string withMarkerLiterals(const std::string& element, const std::string& marker) {
  if (element.find("aa") == std::string::npos) return element;
  // The longer one goes first: it holds the shorter.
  const std::string result =
      stringByReplacingOccurrences(element, "aaa", "'" + lowercaseString(marker) + "'");
  return stringByReplacingOccurrences(result, "aa", "'" + uppercaseString(marker) + "'");
}

SecondHourRule::SecondHourRule(const ClockElements& elements)
    : hasMinutes_(hasRole(elements, &TimeRoles::isMinutes)) {}

std::string SecondHourRule::apply(std::string element) {
  if (hasMinutes_ || !timeRolesOfElement(element).turnsToMinutes) return element;
  return std::exchange(hasSeenHour_, true) ? "mm" : element;
}

bool endsTime(std::string_view pattern) {
  constexpr std::string_view LastLetters = "ahHm";
  return !pattern.empty() && LastLetters.find(pattern.back()) != std::string_view::npos;
}

ClockElements bareTimeFormat(const ClockElements& elements) {
  ClockElements kept = timePart(elements);
  const bool isComplete = hasRole(kept, &TimeRoles::isHour) && hasRole(kept, &TimeRoles::isMinutes);
  return isComplete ? kept : timeFormatOfLocale();
}
