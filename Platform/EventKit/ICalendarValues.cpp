#include "Platform/EventKit/ICalendarValues_p.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>

#include "Platform/EventKit/RecurrenceDays_p.h"

namespace {

/// More zones than there are.
constexpr size_t MostZones = 2000;

int daysInMonth(int year, int month) {
  const int64_t next = dayOfDate(month == 12 ? year + 1 : year, month == 12 ? 1 : month + 1, 1);
  return static_cast<int>(next - dayOfDate(year, month, 1));
}

/// The values of one of libical's lists, which end with a mark or where the list does.
template <size_t Size>
std::vector<int16_t> listed(const short (&list)[Size]) {
  const auto end = std::find(std::begin(list), std::end(list), ICAL_RECURRENCE_ARRAY_MAX);
  return {std::begin(list), end};
}

template <size_t Size, size_t ListSize>
std::bitset<Size> setOf(const short (&list)[ListSize]) {
  std::bitset<Size> set;
  for (const int16_t value : listed(list)) {
    // A leap second is the last one of its minute, as elsewhere.
    if (value >= 0) set.set(std::min(static_cast<size_t>(value), Size - 1));
  }
  return set;
}

}  // namespace

uint16_t ZoneNames::numberOf(const std::string& name, ComponentFault& fault) {
  const auto found = numbers_.find(name);
  if (found != numbers_.end()) return found->second;
  if (names_.size() >= MostZones) {
    fault.note("the file names too many zones");
    return StoredCalendar::FloatingZone;
  }
  names_.push_back(name);
  const auto number = static_cast<uint16_t>(StoredCalendar::UtcZone + names_.size());
  numbers_.emplace(name, number);
  return number;
}

ICalendarComponent parseComponent(const std::string& text) {
  static std::once_flag once;
  std::call_once(once, [] { icalerror_set_errors_are_fatal(false); });
  return ICalendarComponent(icalparser_parse_string(text.c_str()));
}

std::vector<icalproperty*> propertiesOf(icalcomponent* component, icalproperty_kind kind) {
  std::vector<icalproperty*> all;
  for (icalproperty* each = icalcomponent_get_first_property(component, kind); each != nullptr;
       each = icalcomponent_get_next_property(component, kind)) {
    all.push_back(each);
  }
  return all;
}

icalproperty* firstProperty(icalcomponent* component, icalproperty_kind kind) {
  return icalcomponent_get_first_property(component, kind);
}

int64_t readingOf(const icaltimetype& time, ComponentFault& fault) {
  const bool isDate = time.month >= 1 && time.month <= 12 && time.day >= 1 &&
                      time.day <= daysInMonth(time.year, time.month);
  const bool isTime = time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 &&
                      time.second >= 0 && time.second <= 60;
  if (!isDate || (!isTime && time.is_date == 0)) {
    fault.note("there is no such date or time");
    return 0;
  }
  const int64_t day =
      dayOfDate(time.year, static_cast<unsigned>(time.month), static_cast<unsigned>(time.day));
  if (time.is_date != 0) return day * SecondsPerDay;
  return day * SecondsPerDay + time.hour * 3600 + time.minute * 60 + std::min(time.second, 59);
}

StoredTime storedTime(const icaltimetype& time, icalproperty* property, ZoneNames& zones,
                      ComponentFault& fault) {
  StoredTime stored{readingOf(time, fault), StoredCalendar::FloatingZone, time.is_date != 0};
  if (stored.isDate) return stored;
  if (icaltime_is_utc(time) != 0) {
    stored.zone = StoredCalendar::UtcZone;
  } else if (icalparameter* zone =
                 icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER)) {
    stored.zone = zones.numberOf(icalparameter_get_tzid(zone), fault);
  }
  return stored;
}

StoredLength storedLength(const icaldurationtype& duration) {
  // No event is longer than a thousand years.
  constexpr int64_t MostDays = 366000;
  if (duration.is_neg != 0) return {};
  const int64_t days = int64_t{duration.weeks} * 7 + duration.days;
  const int64_t seconds =
      int64_t{duration.hours} * 3600 + int64_t{duration.minutes} * 60 + duration.seconds;
  return {static_cast<int32_t>(std::min(days, MostDays)),
          static_cast<int32_t>(std::min(seconds, int64_t{INT32_MAX}))};
}

RecurrenceRule recurrenceRule(const icalrecurrencetype& from, ComponentFault& fault) {
  using Frequency = RecurrenceRule::Frequency;
  constexpr Frequency Frequencies[] = {Frequency::Secondly, Frequency::Minutely, Frequency::Hourly,
                                       Frequency::Daily,    Frequency::Weekly,   Frequency::Monthly,
                                       Frequency::Yearly};
  if (from.freq < ICAL_SECONDLY_RECURRENCE || from.freq > ICAL_YEARLY_RECURRENCE) {
    fault.note("its rule has no frequency");
    return {};
  }
  if (from.rscale != nullptr && std::string_view(from.rscale) != "GREGORIAN") {
    fault.note("its rule is of another calendar than the Gregorian");
  }
  RecurrenceRule rule;
  rule.frequency = Frequencies[from.freq - ICAL_SECONDLY_RECURRENCE];
  rule.interval = std::max<int>(from.interval, 1);
  rule.count = from.count;
  if (from.week_start != ICAL_NO_WEEKDAY) {
    rule.firstWeekday = static_cast<uint8_t>(from.week_start - ICAL_SUNDAY_WEEKDAY);
  }
  rule.seconds = setOf<60>(from.by_second);
  rule.minutes = setOf<60>(from.by_minute);
  rule.hours = setOf<24>(from.by_hour);
  for (const int16_t month : listed(from.by_month)) {
    if (month >= 1 && month <= 12) {
      rule.months.set(static_cast<size_t>(month));
    } else {
      fault.note("its rule names a month that is none");
    }
  }
  for (const int16_t day : listed(from.by_month_day)) {
    if (day == 0 || std::abs(day) > 31) continue;
    (day > 0 ? rule.monthDays : rule.monthDaysFromEnd).set(static_cast<size_t>(std::abs(day)));
  }
  for (const int16_t day : listed(from.by_day)) {
    const int weekday = icalrecurrencetype_day_day_of_week(day) - ICAL_SUNDAY_WEEKDAY;
    rule.weekDays.push_back({static_cast<int16_t>(icalrecurrencetype_day_position(day)),
                             static_cast<uint8_t>(weekday)});
  }
  rule.yearDays = listed(from.by_year_day);
  rule.weekNumbers = listed(from.by_week_no);
  rule.positions = listed(from.by_set_pos);
  if (rule.isWithinDay() && !rule.positions.empty()) {
    fault.note("its rule picks among times within a day");
  }
  return rule;
}
