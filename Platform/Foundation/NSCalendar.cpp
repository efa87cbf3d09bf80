#include "Platform/Foundation/NSCalendar.h"

#include <unicode/calendar.h>
#include <unicode/gregocal.h>

#include <stdexcept>

#include "Platform/Foundation/IcuTimeZone.h"

struct NSCalendar::Implementation {
  std::unique_ptr<icu::Calendar> calendar;
  std::optional<NSTimeZone> zone;          // Nothing follows the system's.
  std::optional<NSTimeZone> calendarZone;  // What `calendar` stands on now.

  icu::Calendar& at(const NSDate& date) {
    const NSTimeZone wanted = zone ? *zone : NSTimeZone::defaultTimeZone();
    if (!calendarZone || !(*calendarZone == wanted)) {
      calendar->adoptTimeZone(std::make_unique<IcuTimeZone>(wanted).release());
      calendarZone = wanted;
    }
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(date.timeIntervalSince1970() * 1000, status);
    return *calendar;
  }
};

namespace {

struct Field {
  UCalendarDateFields field;
  int64_t offset;
};

Field fieldOf(NSCalendarUnit unit) {
  switch (unit) {
    case NSCalendarUnitEra:
      return {UCAL_ERA, 0};
    case NSCalendarUnitYear:
      return {UCAL_YEAR, 0};
    case NSCalendarUnitMonth:
      return {UCAL_MONTH, 1};
    case NSCalendarUnitDay:
      return {UCAL_DATE, 0};
    case NSCalendarUnitHour:
      return {UCAL_HOUR_OF_DAY, 0};
    case NSCalendarUnitMinute:
      return {UCAL_MINUTE, 0};
    case NSCalendarUnitSecond:
      return {UCAL_SECOND, 0};
    case NSCalendarUnitWeekday:
      return {UCAL_DAY_OF_WEEK, 0};
    case NSCalendarUnitWeekOfYear:
      return {UCAL_WEEK_OF_YEAR, 0};
  }
  throw std::invalid_argument("NSCalendar: an unknown unit");
}

}  // namespace

NSCalendar::NSCalendar(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
NSCalendar::NSCalendar(NSCalendar&&) noexcept = default;
NSCalendar& NSCalendar::operator=(NSCalendar&&) noexcept = default;
NSCalendar::~NSCalendar() = default;

NSCalendar NSCalendar::currentCalendar() {
  UErrorCode status = U_ZERO_ERROR;
  auto implementation = std::make_unique<Implementation>();
  const icu::Locale locale(NSLocale::currentLocale().identifier().c_str());
  implementation->calendar.reset(icu::Calendar::createInstance(locale, status));
  if (U_FAILURE(status)) throw std::runtime_error("NSCalendar: the calendar data is missing");
  return NSCalendar(std::move(implementation));
}

NSCalendar NSCalendar::gregorianCalendar() {
  UErrorCode status = U_ZERO_ERROR;
  auto implementation = std::make_unique<Implementation>();
  const icu::Locale locale(NSLocale::currentLocale().identifier().c_str());
  implementation->calendar = std::make_unique<icu::GregorianCalendar>(locale, status);
  if (U_FAILURE(status)) throw std::runtime_error("NSCalendar: the calendar data is missing");
  return NSCalendar(std::move(implementation));
}

void NSCalendar::setTimeZone(const NSTimeZone& zone) { implementation_->zone = zone; }

int NSCalendar::firstWeekday() const {
  UErrorCode status = U_ZERO_ERROR;
  return static_cast<int>(implementation_->calendar->getFirstDayOfWeek(status));
}

void NSCalendar::setFirstWeekday(int weekday) {
  implementation_->calendar->setFirstDayOfWeek(static_cast<UCalendarDaysOfWeek>(weekday));
}

int NSCalendar::minimumDaysInFirstWeek() const {
  return implementation_->calendar->getMinimalDaysInFirstWeek();
}

void NSCalendar::setMinimumDaysInFirstWeek(int days) {
  implementation_->calendar->setMinimalDaysInFirstWeek(static_cast<uint8_t>(days));
}

int64_t NSCalendar::component(NSCalendarUnit unit, const NSDate& date) const {
  const Field field = fieldOf(unit);
  UErrorCode status = U_ZERO_ERROR;
  return implementation_->at(date).get(field.field, status) + field.offset;
}

int64_t NSCalendar::ordinalityOfUnit(NSCalendarUnit smaller, NSCalendarUnit larger,
                                     const NSDate& date) const {
  if (smaller == NSCalendarUnitDay && larger == NSCalendarUnitMonth) {
    return component(NSCalendarUnitDay, date);
  }
  return 0;
}
