#include "Platform/EventKit/RecurrenceRule_p.h"

#include <algorithm>
#include <utility>

#include "Platform/EventKit/RecurrenceDays_p.h"

namespace {

using Frequency = RecurrenceRule::Frequency;

/// Seconds of a day at which something takes place, ascending.
using TimesOfDay = std::vector<int32_t>;

template <size_t Size>
std::bitset<Size> orElse(const std::bitset<Size>& set, int64_t value) {
  return set.any() ? set : std::bitset<Size>().set(static_cast<size_t>(value));
}

/// The walk through one series.
class Walk {
 public:
  Walk(const RecurrenceRule& rule, int64_t start, int64_t from, int64_t to, WorkBudget& budget,
       const std::function<bool(int64_t)>& visit)
      : rule_(rule),
        start_(start),
        from_(std::max(from, start)),
        to_(to),
        budget_(budget),
        visit_(visit),
        days_(rule, dayOfTime(start)),
        left_(rule.count) {}

  void run() {
    if (rule_.isWithinDay()) return walkWithinDays();
    times_ = timesOfDay();
    for (int64_t period = firstPeriod(); true; ++period) {
      const DayRange range = days_.period(period);
      if (range.first > dayOfTime(to_) || !budget_.spend(2)) return;
      if (rule_.positions.empty() ? !walkPeriod(range) : !walkPositions(range)) return;
    }
  }

 private:
  /// Counted series are walked from their beginning; others from where they are asked for.
  int64_t firstPeriod() const {
    return rule_.count > 0 ? 0 : std::max<int64_t>(0, days_.periodOf(dayOfTime(from_)) - 1);
  }

  TimesOfDay timesOfDay() const {
    const int64_t clock = start_ - dayOfTime(start_) * SecondsPerDay;
    const auto hours = orElse(rule_.hours, clock / 3600);
    const auto minutes = orElse(rule_.minutes, clock / 60 % 60);
    const auto seconds = orElse(rule_.seconds, clock % 60);
    TimesOfDay times;
    for (size_t hour = 0; hour < hours.size(); ++hour) {
      for (size_t minute = 0; hours[hour] && minute < minutes.size(); ++minute) {
        for (size_t second = 0; minutes[minute] && second < seconds.size(); ++second) {
          if (seconds[second]) {
            times.push_back(static_cast<int32_t>(hour * 3600 + minute * 60 + second));
          }
        }
      }
    }
    return times;
  }

  /// One time of the series. Returns whether the walk goes on.
  bool take(int64_t time) {
    if (!budget_.spend() || time > to_) return false;
    if (time < start_) return true;
    if (time >= from_ && !visit_(time)) return false;
    return rule_.count == 0 || --left_ > 0;
  }

  bool walkPeriod(const DayRange& range) {
    for (int64_t day = range.first; day < range.end; ++day) {
      if (!budget_.spend()) return false;
      if (!days_.contains(day)) continue;
      for (const int32_t second : times_) {
        if (!take(day * SecondsPerDay + second)) return false;
      }
    }
    return true;
  }

  bool walkPositions(const DayRange& range) {
    std::vector<int64_t> all;
    for (int64_t day = range.first; day < range.end; ++day) {
      if (!budget_.spend()) return false;
      if (!days_.contains(day)) continue;
      if (!budget_.spend(static_cast<int64_t>(times_.size()))) return false;
      for (const int32_t second : times_)
        all.push_back(day * SecondsPerDay + second);
    }
    std::vector<int64_t> chosen;
    const auto size = static_cast<int64_t>(all.size());
    for (const int64_t position : rule_.positions) {
      const int64_t index = position > 0 ? position - 1 : size + position;
      if (index >= 0 && index < size) chosen.push_back(all[static_cast<size_t>(index)]);
    }
    std::sort(chosen.begin(), chosen.end());
    chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
    return std::all_of(chosen.begin(), chosen.end(), [this](int64_t time) { return take(time); });
  }

  /// Hours, minutes and seconds recur across days; the days decide first, so that a rule for one
  /// day a year costs no more than the days of the year.
  void walkWithinDays() {
    const int64_t step = unit() * rule_.interval;
    int64_t first = start_ - start_ % unit() + (start_ < 0 && start_ % unit() != 0 ? -unit() : 0);
    const bool isPlain =
        days_.isEveryDay() && rule_.hours.none() && rule_.minutes.none() && rule_.seconds.none();
    if (from_ > start_ && (rule_.count == 0 || isPlain)) {
      const int64_t skipped = (from_ - first) / step;
      if (rule_.count > 0 && (left_ -= skipped) <= 0) return;
      first += skipped * step;
    }
    for (int64_t time = first; time <= to_;) {
      if (!budget_.spend()) return;
      const int64_t day = dayOfTime(time);
      if (!days_.contains(day)) {
        time = alignedBehind(time, (day + 1) * SecondsPerDay, step);
      } else if (!hourFits(time)) {
        time = alignedBehind(time, (time / 3600 + (time < 0 && time % 3600 != 0 ? 0 : 1)) * 3600,
                             step);
      } else {
        if (!walkUnit(time)) return;
        time += step;
      }
    }
  }

  int64_t unit() const {
    if (rule_.frequency == Frequency::Hourly) return 3600;
    return rule_.frequency == Frequency::Minutely ? 60 : 1;
  }

  static int64_t alignedBehind(int64_t time, int64_t moment, int64_t step) {
    return time + std::max<int64_t>(1, (moment - time + step - 1) / step) * step;
  }

  bool hourFits(int64_t time) const {
    const int64_t clock = time - dayOfTime(time) * SecondsPerDay;
    return rule_.hours.none() || rule_.hours[static_cast<size_t>(clock / 3600)];
  }

  /// The times in one hour, minute or second that begins at `time`.
  bool walkUnit(int64_t time) {
    const int64_t clock = time - dayOfTime(time) * SecondsPerDay;
    const auto minute = static_cast<size_t>(clock / 60 % 60);
    const auto second = static_cast<size_t>(clock % 60);
    if (rule_.frequency == Frequency::Secondly) {
      if (rule_.seconds.any() && !rule_.seconds[second]) return true;
      return (rule_.minutes.any() && !rule_.minutes[minute]) || take(time);
    }
    const int64_t startClock = start_ - dayOfTime(start_) * SecondsPerDay;
    const auto seconds = orElse(rule_.seconds, startClock % 60);
    if (rule_.frequency == Frequency::Minutely) {
      return (rule_.minutes.any() && !rule_.minutes[minute]) || walkSeconds(time, seconds);
    }
    const auto minutes = orElse(rule_.minutes, startClock / 60 % 60);
    for (size_t each = 0; each < minutes.size(); ++each) {
      if (minutes[each] && !walkSeconds(time + static_cast<int64_t>(each) * 60, seconds)) {
        return false;
      }
    }
    return true;
  }

  bool walkSeconds(int64_t time, const std::bitset<60>& seconds) {
    for (size_t second = 0; second < seconds.size(); ++second) {
      if (seconds[second] && !take(time + static_cast<int64_t>(second))) return false;
    }
    return true;
  }

  const RecurrenceRule& rule_;
  const int64_t start_;
  const int64_t from_;
  const int64_t to_;
  WorkBudget& budget_;
  const std::function<bool(int64_t)>& visit_;
  const RecurrenceDays days_;
  TimesOfDay times_;
  int64_t left_;
};

}  // namespace

void visitRecurrences(const RecurrenceRule& rule, int64_t start, int64_t from, int64_t to,
                      WorkBudget& budget, const std::function<bool(int64_t)>& visit) {
  Walk(rule, start, from, to, budget, visit).run();
}
