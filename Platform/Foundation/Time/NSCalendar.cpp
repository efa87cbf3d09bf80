#include "Platform/Foundation/Time/NSCalendar.h"

#include <unicode/calendar.h>
#include <unicode/gregocal.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <stdexcept>

#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Zones/IcuTimeZone_p.h"

namespace {

struct Unit {
  NSCalendarUnit unit;
  UCalendarDateFields field;
  int64_t offset;
  std::optional<int64_t> NSDateComponents::*part;
};

/// From the largest to the smallest.
constexpr Unit Units[] = {
    {NSCalendarUnitEra, UCAL_ERA, 0, &NSDateComponents::era},
    {NSCalendarUnitYear, UCAL_YEAR, 0, &NSDateComponents::year},
    {NSCalendarUnitMonth, UCAL_MONTH, 1, &NSDateComponents::month},
    {NSCalendarUnitWeekOfYear, UCAL_WEEK_OF_YEAR, 0, &NSDateComponents::weekOfYear},
    {NSCalendarUnitDay, UCAL_DATE, 0, &NSDateComponents::day},
    {NSCalendarUnitWeekday, UCAL_DAY_OF_WEEK, 0, &NSDateComponents::weekday},
    {NSCalendarUnitHour, UCAL_HOUR_OF_DAY, 0, &NSDateComponents::hour},
    {NSCalendarUnitMinute, UCAL_MINUTE, 0, &NSDateComponents::minute},
    {NSCalendarUnitSecond, UCAL_SECOND, 0, &NSDateComponents::second},
};

const Unit& knownUnit(uint64_t unit) {
  const auto* found =
      std::find_if(std::begin(Units), std::end(Units),
                   [unit](const Unit& candidate) { return candidate.unit == unit; });
  if (found == std::end(Units)) throw std::invalid_argument("NSCalendar: an unknown unit");
  return *found;
}

int32_t fieldValue(int64_t value) {
  using Limits = std::numeric_limits<int32_t>;
  if (value < Limits::min() || value > Limits::max()) {
    throw std::out_of_range("NSCalendar: a part of a date is beyond 32 bits");
  }
  return static_cast<int32_t>(value);
}

NSDate dateOf(const icu::Calendar& calendar) {
  UErrorCode status = U_ZERO_ERROR;
  return NSDate::dateWithTimeIntervalSince1970(calendar.getTime(status) / 1000);
}

using CalendarPointer = std::unique_ptr<icu::Calendar>;

CalendarPointer prepared(CalendarPointer calendar, UErrorCode status) {
  if (U_FAILURE(status)) throw std::runtime_error("NSCalendar: the calendar data is missing");
  calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
  return calendar;
}

CalendarPointer calendarOfLocale(const NSLocale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale icuLocale(locale.identifier().c_str());
  return prepared(CalendarPointer(icu::Calendar::createInstance(icuLocale, status)), status);
}

}  // namespace

struct NSCalendar::Implementation {
  explicit Implementation(std::unique_ptr<icu::Calendar> made) : calendar(std::move(made)) {}

  CalendarPointer calendar;
  std::optional<NSLocale> followedLocale =
      {};                               // That of `calendar`, if it follows the current one.
  std::optional<NSTimeZone> zone = {};  // Nothing follows the system's.
  std::optional<NSTimeZone> calendarZone = {};  // What `calendar` stands on now.

  icu::Calendar& current() {
    if (followedLocale) {
      const NSLocale locale = NSLocale::currentLocale();
      if (!(locale == *followedLocale)) {
        calendar = calendarOfLocale(locale);
        calendarZone.reset();
        followedLocale = locale;
      }
    }
    const NSTimeZone wanted = zone ? *zone : NSTimeZone::defaultTimeZone();
    if (!calendarZone || !(*calendarZone == wanted)) {
      calendar->adoptTimeZone(std::make_unique<IcuTimeZone>(wanted).release());
      calendarZone = wanted;
    }
    return *calendar;
  }

  icu::Calendar& at(const NSDate& date) {
    UErrorCode status = U_ZERO_ERROR;
    current().setTime(date.timeIntervalSince1970() * 1000, status);
    return *calendar;
  }
};

NSCalendar::NSCalendar(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
NSCalendar::NSCalendar(NSCalendar&&) noexcept = default;
NSCalendar& NSCalendar::operator=(NSCalendar&&) noexcept = default;
NSCalendar::~NSCalendar() = default;

NSCalendar NSCalendar::currentCalendar() {
  auto calendar = calendarOfLocale(NSLocale::currentLocale());
  return NSCalendar(std::make_unique<Implementation>(std::move(calendar)));
}

NSCalendar NSCalendar::autoupdatingCurrentCalendar() {
  NSCalendar calendar = currentCalendar();
  calendar.implementation_->followedLocale = NSLocale::currentLocale();
  return calendar;
}

NSCalendar NSCalendar::gregorianCalendar() {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale locale(NSLocale::currentLocale().identifier().c_str());
  CalendarPointer calendar = std::make_unique<icu::GregorianCalendar>(locale, status);
  return NSCalendar(std::make_unique<Implementation>(prepared(std::move(calendar), status)));
}

std::string NSCalendar::calendarIdentifier() const { return implementation_->current().getType(); }

void NSCalendar::setTimeZone(const NSTimeZone& zone) { implementation_->zone = zone; }

int NSCalendar::firstWeekday() const {
  UErrorCode status = U_ZERO_ERROR;
  return static_cast<int>(implementation_->current().getFirstDayOfWeek(status));
}

void NSCalendar::setFirstWeekday(int weekday) {
  implementation_->current().setFirstDayOfWeek(static_cast<UCalendarDaysOfWeek>(weekday));
}

int NSCalendar::minimumDaysInFirstWeek() const {
  return implementation_->current().getMinimalDaysInFirstWeek();
}

void NSCalendar::setMinimumDaysInFirstWeek(int days) {
  implementation_->current().setMinimalDaysInFirstWeek(static_cast<uint8_t>(days));
}

int64_t NSCalendar::component(NSCalendarUnit unit, const NSDate& date) const {
  const Unit& known = knownUnit(unit);
  UErrorCode status = U_ZERO_ERROR;
  return implementation_->at(date).get(known.field, status) + known.offset;
}

NSDateComponents NSCalendar::components(uint64_t units, const NSDate& date) const {
  NSDateComponents components;
  for (uint64_t rest = units; rest != 0; rest &= rest - 1) {
    const uint64_t lowest = rest & (~rest + 1);
    const Unit& known = knownUnit(lowest);
    components.*known.part = component(known.unit, date);
  }
  return components;
}

NSDate NSCalendar::dateFromComponents(const NSDateComponents& components) const {
  icu::Calendar& calendar = implementation_->current();
  calendar.clear();
  calendar.set(UCAL_YEAR, 1);
  for (const Unit& unit : Units) {
    const auto& value = components.*unit.part;
    const bool isOfWeek =
        unit.unit == NSCalendarUnitWeekday || unit.unit == NSCalendarUnitWeekOfYear;
    if (value && !isOfWeek) calendar.set(unit.field, fieldValue(*value - unit.offset));
  }
  return dateOf(calendar);
}

NSDate NSCalendar::dateByAddingComponents(const NSDateComponents& components,
                                          const NSDate& date) const {
  icu::Calendar& calendar = implementation_->at(date);
  for (const Unit& unit : Units) {
    const auto& amount = components.*unit.part;
    if (!amount) continue;
    if (unit.unit == NSCalendarUnitEra || unit.unit == NSCalendarUnitWeekday) {
      throw std::invalid_argument("NSCalendar: eras and weekdays cannot be added");
    }
    UErrorCode status = U_ZERO_ERROR;
    calendar.add(unit.field, fieldValue(*amount), status);
  }
  return dateOf(calendar);
}

int64_t NSCalendar::ordinalityOfUnit(NSCalendarUnit smaller, NSCalendarUnit larger,
                                     const NSDate& date) const {
  const bool isDay = smaller == NSCalendarUnitDay;
  if (!isDay || (larger != NSCalendarUnitMonth && larger != NSCalendarUnitYear)) {
    throw std::invalid_argument("NSCalendar: only the day of a month or a year is counted");
  }
  UErrorCode status = U_ZERO_ERROR;
  const auto field = larger == NSCalendarUnitYear ? UCAL_DAY_OF_YEAR : UCAL_DATE;
  return implementation_->at(date).get(field, status);
}
