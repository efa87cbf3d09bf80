#include "Platform/Foundation/Time/NSDateFormatter.h"

#include <unicode/calendar.h>
#include <unicode/dtfmtsym.h>
#include <unicode/smpdtfmt.h>

#include <cmath>
#include <map>
#include <optional>

#include "Platform/Foundation/Time/DatePattern_p.h"
#include "Platform/Foundation/Zones/IcuTimeZone_p.h"
#include "Platform/Foundation/Zones/IcuTimeZoneFormat_p.h"

namespace {

/// Compiled patterns of one locale. All of them format from one calendar, which works its fields
/// out once for an instant however many patterns ask for them.
struct CompiledLocale {
  explicit CompiledLocale(const std::string& identifier) : locale(identifier.c_str()) {
    UErrorCode status = U_ZERO_ERROR;
    calendar.reset(icu::Calendar::createInstance(locale, status));
  }

  DatePattern* patternFor(std::string_view pattern) {
    const auto found = patterns.find(pattern);
    if (found != patterns.end()) return &found->second;
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern),
                                                          locale, status);
    // Names of zones are read when they are first asked for; most patterns never do.
    if (pattern.find('V') != std::string_view::npos)
      format->adoptTimeZoneFormat(std::make_unique<IcuTimeZoneFormat>(locale, status).release());
    if (U_FAILURE(status)) return nullptr;
    // The patterns of all clocks together are few; the bound is for a list that is edited all day.
    constexpr size_t MaximumKept = 128;
    if (patterns.size() >= MaximumKept) patterns.clear();
    return &patterns.try_emplace(std::string(pattern), pattern, std::move(format)).first->second;
  }

  /// Several patterns ask for one instant in a row.
  void turnTo(const NSDate& date, const NSTimeZone& zone) {
    if (moment && moment->date == date && moment->zone == zone) return;
    const double wallClock =
        std::floor(date.timeIntervalSince1970()) + zone.secondsFromGMTForDate(date);
    moment = {date, zone, wallClock};
  }

  /// The calendar at the moment; it stays behind as long as only kept texts are asked for.
  icu::Calendar& turnedCalendar() {
    if (moment->isOnCalendar) return *calendar;
    if (calendarZone != moment->zone) {
      calendar->adoptTimeZone(std::make_unique<IcuTimeZone>(moment->zone).release());
      calendarZone = moment->zone;
    }
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(moment->date.timeIntervalSince1970() * 1000, status);
    moment->isOnCalendar = true;
    return *calendar;
  }

  struct Moment {
    NSDate date;
    NSTimeZone zone;
    double wallClock;  ///< The whole second that the zone's clocks show, as if they stood on UTC.
    bool isOnCalendar = false;
  };

  icu::Locale locale;
  std::unique_ptr<icu::Calendar> calendar;
  std::optional<NSTimeZone> calendarZone;
  std::optional<Moment> moment;
  std::map<std::string, DatePattern, std::less<>> patterns;
};

/// The symbols of a compiled pattern are those of its locale's calendar: months have other names in
/// another calendar.
std::string identifierWithCalendar(const std::string& identifier, const std::string& calendar) {
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale locale(identifier.c_str());
  locale.setKeywordValue("calendar", calendar.c_str(), status);
  return U_SUCCESS(status) ? locale.getName() : identifier;
}

std::shared_ptr<CompiledLocale> compiledLocale(const std::string& identifier) {
  static std::map<std::string, std::weak_ptr<CompiledLocale>> known;
  auto& entry = known[identifier];
  auto compiled = entry.lock();
  if (!compiled) {
    compiled = std::make_shared<CompiledLocale>(identifier);
    entry = compiled;
  }
  return compiled;
}

icu::DateFormat::EStyle icuStyle(NSDateFormatterStyle style) {
  switch (style) {
    case NSDateFormatterStyle::None:
      return icu::DateFormat::kNone;
    case NSDateFormatterStyle::Short:
      return icu::DateFormat::kShort;
    case NSDateFormatterStyle::Medium:
      return icu::DateFormat::kMedium;
    case NSDateFormatterStyle::Long:
      return icu::DateFormat::kLong;
    case NSDateFormatterStyle::Full:
      return icu::DateFormat::kFull;
  }
  return icu::DateFormat::kNone;
}

}  // namespace

struct NSDateFormatter::Implementation {
  NSLocale locale = NSLocale::currentLocale();
  NSTimeZone zone = NSTimeZone::defaultTimeZone();
  NSDateFormatterStyle dateStyle = NSDateFormatterStyle::None;
  NSDateFormatterStyle timeStyle = NSDateFormatterStyle::None;
  std::string pattern;
  std::string calendar = NSCalendar::currentCalendar().calendarIdentifier();
  std::shared_ptr<CompiledLocale> compiled;

  Implementation() { compile(); }

  void compile() {
    compiled = compiledLocale(identifierWithCalendar(locale.identifier(), calendar));
  }

  void applyStyles() {
    pattern.clear();
    // The library has a pattern of its own for no style at all.
    if (dateStyle == NSDateFormatterStyle::None && timeStyle == NSDateFormatterStyle::None) return;
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icuStyle(dateStyle), icuStyle(timeStyle), compiled->locale));
    const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get());
    if (simple == nullptr) return;
    icu::UnicodeString text;
    simple->toPattern(text).toUTF8String(pattern);
  }
};

NSDateFormatter::NSDateFormatter() : implementation_(std::make_unique<Implementation>()) {}
NSDateFormatter::NSDateFormatter(NSDateFormatter&&) noexcept = default;
NSDateFormatter& NSDateFormatter::operator=(NSDateFormatter&&) noexcept = default;
NSDateFormatter::~NSDateFormatter() = default;

void NSDateFormatter::setLocale(const NSLocale& locale) {
  implementation_->locale = locale;
  implementation_->compile();
}

void NSDateFormatter::setCalendar(const NSCalendar& calendar) {
  implementation_->calendar = calendar.calendarIdentifier();
  implementation_->compile();
}

const NSLocale& NSDateFormatter::locale() const { return implementation_->locale; }

void NSDateFormatter::setTimeZone(const NSTimeZone& zone) { implementation_->zone = zone; }

const NSTimeZone& NSDateFormatter::timeZone() const { return implementation_->zone; }

void NSDateFormatter::setDateStyle(NSDateFormatterStyle style) {
  implementation_->dateStyle = style;
  implementation_->applyStyles();
}

void NSDateFormatter::setTimeStyle(NSDateFormatterStyle style) {
  implementation_->timeStyle = style;
  implementation_->applyStyles();
}

void NSDateFormatter::setDateFormat(std::string_view pattern) {
  implementation_->pattern = pattern;
}

std::string NSDateFormatter::dateFormat() const { return implementation_->pattern; }

std::vector<std::string> NSDateFormatter::veryShortWeekdaySymbols() const {
  UErrorCode status = U_ZERO_ERROR;
  const icu::DateFormatSymbols symbols(implementation_->compiled->locale, status);
  int32_t count = 0;
  // The first is of no day.
  const icu::UnicodeString* names =
      symbols.getWeekdays(count, icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::NARROW);
  std::vector<std::string> texts;
  for (int32_t day = 1; U_SUCCESS(status) && day < count; ++day)
    names[day].toUTF8String(texts.emplace_back());
  return texts;
}

std::string NSDateFormatter::stringFromDate(const NSDate& date) {
  CompiledLocale& compiled = *implementation_->compiled;
  if (implementation_->pattern.empty() || !compiled.calendar) return {};
  DatePattern* pattern = compiled.patternFor(implementation_->pattern);
  if (pattern == nullptr) return {};
  compiled.turnTo(date, implementation_->zone);
  const double wallClock = compiled.moment->wallClock;
  if (const std::string* const kept = pattern->keptText(wallClock)) return *kept;
  return pattern->text(compiled.turnedCalendar(), wallClock);
}
