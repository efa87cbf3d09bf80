#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

enum class NSDateFormatterStyle { None = 0, Short = 1, Medium = 2, Long = 3, Full = 4 };

/// Turns an instant into text by an ICU date pattern, a locale and a zone. Compiled patterns are
/// kept for each locale, so that changing the pattern back and forth is cheap.
///
/// The calendar is the user's own in whatever language the text is, so that all dates on the screen
/// count alike.
///
/// Main thread only.
class NSDateFormatter {
 public:
  /// The current locale, the system's zone and an empty pattern.
  NSDateFormatter();
  NSDateFormatter(NSDateFormatter&&) noexcept;
  NSDateFormatter& operator=(NSDateFormatter&&) noexcept;
  ~NSDateFormatter();

  void setLocale(const NSLocale& locale);
  const NSLocale& locale() const;
  /// Takes the system of counting only: weeks stay those of the locale, the zone the formatter's.
  void setCalendar(const NSCalendar& calendar);
  void setTimeZone(const NSTimeZone& zone);
  const NSTimeZone& timeZone() const;

  void setDateStyle(NSDateFormatterStyle style);
  void setTimeStyle(NSDateFormatterStyle style);

  void setDateFormat(std::string_view pattern);
  /// The pattern that was set, or that of the styles in the locale.
  std::string dateFormat() const;

  /// The weekdays' names at their shortest, from Sunday on.
  std::vector<std::string> veryShortWeekdaySymbols() const;

  /// A pattern letter that does not exist ends the text before it.
  std::string stringFromDate(const NSDate& date);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};
