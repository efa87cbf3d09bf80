#pragma once

#include <compare>
#include <string>

/// An instant: seconds since 1970-01-01 00:00 UTC, without leap seconds, as a double.
class NSDate {
 public:
  /// The present instant, by the installed `SystemClock`.
  static NSDate date();
  static NSDate dateWithTimeIntervalSince1970(double seconds) { return NSDate(seconds); }

  double timeIntervalSince1970() const { return seconds_; }
  NSDate dateByAddingTimeInterval(double seconds) const { return NSDate(seconds_ + seconds); }

  /// "2026-11-21 15:04:05 +0000", always in UTC.
  std::string description() const;

  friend auto operator<=>(const NSDate&, const NSDate&) = default;

 private:
  explicit NSDate(double seconds) : seconds_(seconds) {}

  double seconds_;
};
