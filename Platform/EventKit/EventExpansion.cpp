#include "Platform/EventKit/EventExpansion_p.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "Platform/EventKit/RecurrenceDays_p.h"

namespace {

/// One series: at most so many candidates are looked at, and so many times shown.
constexpr int64_t WorkPerSeries = 1'000'000;
constexpr size_t MostTimes = 5000;

/// An event that is given takes as much as so many candidates that are not: memory, and a place in
/// each list that it comes to.
constexpr int64_t WorkPerEvent = 250;

/// Between the parts of an event's identifier, none of which holds it.
const std::string Separator = "\t";

/// No clock is further from UTC.
constexpr int64_t LargestOffset = 26 * 3600;

/// The events of one identifier: what recurs, and what stands for single times of it.
class Series {
 public:
  using Events = std::vector<StoredEvent>::const_iterator;

  Series(const StoredCalendar& stored, Events first, Events end, const ExpansionContext& context,
         WorkBudget& budget, std::vector<std::shared_ptr<const EKEvent>>& events)
      : stored_(stored), context_(context), budget_(budget), events_(events) {
    for (auto each = first; each != end; ++each) {
      if (each->recurrenceId) {
        const StoredEvent*& changed = changed_[keyOf(*each->recurrenceId)];
        if (changed == nullptr || changed->sequence <= each->sequence) changed = &*each;
      } else {
        masters_.push_back(&*each);
      }
    }
  }

  void expand() {
    for (const auto& [time, event] : changed_)
      addWritten(*event, nameOf(time));
    for (size_t number = 0; number < masters_.size(); ++number) {
      // Different events under one identifier are no good manners, but are seen.
      const std::string suffix = number == 0 ? "" : Separator + std::to_string(number + 1);
      const StoredEvent& event = *masters_[number];
      event.recurrence ? addTimes(event, suffix) : addWritten(event, suffix);
    }
  }

 private:
  /// A time of a series, by which exceptions find it: a date by its day, others by their instant.
  using Key = std::pair<bool, int64_t>;

  Key keyOf(const StoredTime& time) const {
    return {time.isDate, time.isDate ? time.reading : instantOf(time)};
  }

  static std::string nameOf(const Key& key) {
    return (key.first ? Separator + "day" : Separator + "time") + std::to_string(key.second);
  }

  int64_t instantOf(const StoredTime& time) const {
    return stored_.instantOf(time, context_.wallZone);
  }

  static StoredTime moved(StoredTime time, int64_t reading) {
    time.reading = reading;
    return time;
  }

  /// Where something ends that starts at `start` and is so long.
  int64_t endAfter(const StoredTime& start, const StoredLength& length) const {
    if (!start.isDate) {
      const StoredTime day = moved(start, start.reading + length.days * SecondsPerDay);
      return instantOf(day) + length.seconds;
    }
    // All-day events have whole days, and one at least.
    const int64_t days = length.days + (length.seconds + SecondsPerDay - 1) / SecondsPerDay;
    return instantOf(moved(start, start.reading + std::max<int64_t>(days, 1) * SecondsPerDay));
  }

  int64_t endBy(const StoredTime& start, const StoredTime& end) const {
    if (!start.isDate) return std::max(instantOf(start), instantOf(end));
    const int64_t seconds = std::max<int64_t>(end.reading - start.reading, 0);
    return endAfter(start,
                    {static_cast<int32_t>((seconds + SecondsPerDay - 1) / SecondsPerDay), 0});
  }

  int64_t endOf(const StoredEvent& event) const {
    return event.end ? endBy(event.start, *event.end) : endAfter(event.start, event.length);
  }

  /// The end of a time of a series. An end that is written makes all times equally long, a duration
  /// goes by the clock (RFC 5545, section 3.8.5.3).
  int64_t endOfTime(const StoredEvent& event, const StoredTime& start) const {
    if (!event.end) return endAfter(start, event.length);
    if (!start.isDate) return instantOf(start) + endOf(event) - instantOf(event.start);
    return endBy(start,
                 moved(*event.end, event.end->reading + start.reading - event.start.reading));
  }

  bool isSeen(const StoredTime& startTime, int64_t end) const {
    const int64_t start = instantOf(startTime);
    const TimeSpan& span = context_.span;
    return start < span.end && (start == end ? start >= span.start : end > span.start);
  }

  void addWritten(const StoredEvent& event, const std::string& suffix) {
    add(event, event.start, endOf(event), suffix);
  }

  void add(const StoredEvent& event, const StoredTime& startTime, int64_t end,
           const std::string& suffix) {
    if (!budget_.spend() || !isSeen(startTime, end) || !budget_.spend(WorkPerEvent)) return;
    EKEvent::Values values;
    const StoredTexts& texts = event.texts;
    if (!texts.title().empty()) values.title = texts.title();
    values.eventIdentifier.reserve(context_.prefix.size() + texts.uid().size() + suffix.size());
    values.eventIdentifier.append(context_.prefix).append(texts.uid()).append(suffix);
    values.startDate =
        NSDate::dateWithTimeIntervalSince1970(static_cast<double>(instantOf(startTime)));
    values.endDate = NSDate::dateWithTimeIntervalSince1970(static_cast<double>(end));
    values.isAllDay = event.start.isDate;
    values.status = event.status;
    values.attendees = attendeesOf(event);
    values.calendar = context_.calendar;
    events_.push_back(std::make_shared<const EKEvent>(std::move(values)));
  }

  std::vector<EKParticipant> attendeesOf(const StoredEvent& event) const {
    std::vector<EKParticipant> all;
    const std::string_view text = event.texts.attendees();
    for (size_t start = 0; start < text.size();) {
      const size_t end = text.find('\n', start);
      const std::string address(text.substr(start + 1, end - start - 1));
      all.push_back({context_.userAddresses.contains(address),
                     static_cast<EKParticipantStatus>(text[start] - '0')});
      start = end + 1;
    }
    return all;
  }

  bool isLeftOut(const StoredTime& time) const {
    const Key day{true, dayOfTime(time.reading) * SecondsPerDay};
    return changed_.contains(keyOf(time)) || changed_.contains(day) ||
           exceptions_.contains(keyOf(time)) || exceptions_.contains(day);
  }

  void addTime(const StoredEvent& event, const StoredTime& start, int64_t end,
               const std::string& suffix) {
    const Key key = keyOf(start);
    if (!isSeen(start, end) || isLeftOut(start) || !shown_.insert(key).second) return;
    add(event, start, end, suffix + nameOf(key));
  }

  void addTimes(const StoredEvent& event, const std::string& suffix) {
    const StoredRecurrence& recurrence = *event.recurrence;
    exceptions_.clear();
    shown_.clear();
    for (const StoredTime& exception : recurrence.exceptions)
      exceptions_.insert(keyOf(exception));
    budget_.spend(static_cast<int64_t>(recurrence.exceptions.size() + recurrence.dates.size()));
    addTime(event, event.start, endOf(event), suffix);
    for (const StoredRecurrence::Date& date : recurrence.dates) {
      const int64_t end = date.end      ? endBy(date.time, *date.end)
                          : date.length ? endAfter(date.time, *date.length)
                                        : endOfTime(event, date.time);
      addTime(event, date.time, end, suffix);
    }
    for (const StoredRecurrence::Rule& rule : recurrence.rules)
      addTimesOfRule(event, rule, suffix);
  }

  void addTimesOfRule(const StoredEvent& event, const StoredRecurrence::Rule& rule,
                      const std::string& suffix) {
    // What began before the span may reach into it.
    const int64_t length = endOf(event) - instantOf(event.start);
    const int64_t from = context_.span.start - length - LargestOffset;
    const int64_t to = context_.span.end + LargestOffset;
    const int64_t last = rule.until ? lastInstant(*rule.until) : INT64_MAX;
    WorkBudget own(std::min(WorkPerSeries, budget_.left()));
    const int64_t before = own.left();
    visitRecurrences(*rule.rule, event.start.reading, from, to, own, [&](int64_t reading) {
      const StoredTime start = moved(event.start, reading);
      if (instantOf(start) > last) return false;
      addTime(event, start, endOfTime(event, start), suffix);
      return shown_.size() < MostTimes && !budget_.isSpent();
    });
    budget_.spend(before - own.left());
  }

  /// A series that ends on a date has that whole day.
  int64_t lastInstant(const StoredTime& until) const {
    if (!until.isDate) return instantOf(until);
    return instantOf(moved(until, until.reading + SecondsPerDay - 1));
  }

  const StoredCalendar& stored_;
  const ExpansionContext& context_;
  WorkBudget& budget_;
  std::vector<std::shared_ptr<const EKEvent>>& events_;
  std::vector<const StoredEvent*> masters_;
  std::map<Key, const StoredEvent*> changed_;
  std::set<Key> exceptions_;
  std::set<Key> shown_;
};

}  // namespace

void expandEvents(const StoredCalendar& stored, ExpansionPass pass, const ExpansionContext& context,
                  WorkBudget& budget, std::vector<std::shared_ptr<const EKEvent>>& events) {
  const auto end = stored.events.end();
  for (auto first = stored.events.begin(); first != end && !budget.isSpent();) {
    const auto next = std::find_if(first, end, [&](const StoredEvent& event) {
      return event.texts.uid() != first->texts.uid();
    });
    const bool isRecurring = std::any_of(
        first, next, [](const StoredEvent& event) { return event.recurrence != nullptr; });
    if (isRecurring == (pass == ExpansionPass::Recurring)) {
      Series(stored, first, next, context, budget, events).expand();
    }
    first = next;
  }
}
