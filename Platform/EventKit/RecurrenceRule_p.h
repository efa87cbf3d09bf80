#pragma once

#include <bitset>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

/// How much may still be looked at, so that no calendar keeps anybody waiting. Each candidate of a
/// recurrence and each event costs one.
class WorkBudget {
 public:
  explicit WorkBudget(int64_t work) : left_(work) {}

  /// Returns false once all is used up.
  bool spend(int64_t work = 1) {
    left_ -= work;
    return left_ >= 0;
  }
  bool isSpent() const { return left_ < 0; }
  int64_t left() const { return left_; }

 private:
  int64_t left_;
};

/// A rule by which something recurs, RFC 5545 section 3.3.10. Its times are readings of a clock, in
/// seconds since 1970 as if the clock showed UTC.
///
/// It is worked out here and not by the library that reads the files: that one tries each second or
/// minute in turn until one fits, without an end and without a way to stop it.
struct RecurrenceRule {
  enum class Frequency : uint8_t { Secondly, Minutely, Hourly, Daily, Weekly, Monthly, Yearly };

  /// "2MO": the second Monday; an ordinal of 0 is every Monday. 0 is Sunday.
  struct WeekDay {
    int16_t ordinal = 0;
    uint8_t day = 0;
  };

  Frequency frequency = Frequency::Daily;
  int32_t interval = 1;      ///< At least 1.
  int64_t count = 0;         ///< So many times in all; 0 without an end.
  uint8_t firstWeekday = 1;  ///< Where weeks begin.
  std::bitset<60> seconds;   ///< In all of these sets none means any.
  std::bitset<60> minutes;
  std::bitset<24> hours;
  std::bitset<13> months;     ///< 1 to 12.
  std::bitset<32> monthDays;  ///< 1 to 31.
  std::bitset<32> monthDaysFromEnd;
  std::vector<WeekDay> weekDays;
  std::vector<int16_t> yearDays;     ///< Negative ones count from the year's end.
  std::vector<int16_t> weekNumbers;  ///< So do these.
  std::vector<int16_t> positions;    ///< Which of a period's times; not with Hourly and below.

  bool isWithinDay() const { return frequency <= Frequency::Hourly; }
};

/// Calls `visit` with the times of `rule` that lie in [from, to], ascending, until it returns false
/// or the budget is spent. The first of the series is at or behind `start`, which sets what the
/// rule leaves open.
void visitRecurrences(const RecurrenceRule& rule, int64_t start, int64_t from, int64_t to,
                      WorkBudget& budget, const std::function<bool(int64_t)>& visit);
