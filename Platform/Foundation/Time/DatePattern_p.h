#pragma once

// For the platform's own sources only: this header shows ICU.

#include <unicode/smpdtfmt.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// A compiled pattern of one locale with the texts that come again: most of a clock's stay as they
/// are for a minute, and its seconds are the same sixty.
class DatePattern {
 public:
  DatePattern(std::string_view pattern, std::unique_ptr<icu::SimpleDateFormat> format);

  /// The text of the whole second that a zone's clocks show, counted from 1970 as if they stood on
  /// UTC; null if it is not kept.
  const std::string* keptText(double wallClock) const;
  /// The text of the instant at which a calendar stands; kept where it will come again.
  std::string text(icu::Calendar& calendar, double wallClock);

 private:
  /// What a text is kept for.
  enum class Period { None, Minute, SecondOfMinute };
  struct Kept {
    double time;
    std::string text;
  };

  static Period periodOf(std::string_view pattern);
  /// The minute, or the second of one; not a number where nothing is kept.
  double timeOf(double wallClock) const;
  size_t placeOf(double time) const;

  std::unique_ptr<icu::SimpleDateFormat> format_;
  Period period_;
  std::vector<Kept> kept_;  ///< For each second of a minute, or one.
};
