#include "Platform/EventKit/ICalendarZone_p.h"

#include <algorithm>
#include <utility>

#include "Platform/EventKit/ICalendarValues_p.h"
#include "Platform/EventKit/RecurrenceDays_p.h"
#include "Platform/Foundation/Zones/WindowsTimeZones.h"

namespace {

constexpr int LargestOffset = 26 * 3600;
constexpr size_t MostChanges = 2000;
constexpr int64_t WorkPerZone = 300'000;
constexpr size_t MostDefinitions = 200;

// What is kept to find the same definition in the next file.
constexpr size_t MostKnown = 200;
constexpr size_t LargestKnown = 32 << 10;

int32_t offsetOf(int seconds, ComponentFault& fault) {
  if (seconds < -LargestOffset || seconds > LargestOffset) fault.note("an offset is out of range");
  return std::clamp(seconds, -LargestOffset, LargestOffset);
}

/// A change of the clock, with what it was before.
struct ClockChange {
  int64_t time;
  int32_t before;
  int32_t after;
};

/// The changes to one of a zone's clocks, such as its daylight saving time.
void addChanges(icalcomponent* observance, WorkBudget& budget, std::vector<ClockChange>& changes,
                ComponentFault& fault) {
  icalproperty* start = firstProperty(observance, ICAL_DTSTART_PROPERTY);
  icalproperty* from = firstProperty(observance, ICAL_TZOFFSETFROM_PROPERTY);
  icalproperty* to = firstProperty(observance, ICAL_TZOFFSETTO_PROPERTY);
  if (start == nullptr || from == nullptr || to == nullptr) {
    fault.note("a change of its clock is incomplete");
    return;
  }
  const int32_t before = offsetOf(icalproperty_get_tzoffsetfrom(from), fault);
  const int32_t after = offsetOf(icalproperty_get_tzoffsetto(to), fault);
  const int64_t first = readingOf(icalproperty_get_dtstart(start), fault);
  const auto add = [&](int64_t reading) {
    if (changes.size() >= MostChanges) {
      fault.note("its clock changes too often");
      return false;
    }
    changes.push_back({reading - before, before, after});
    return true;
  };
  add(first);
  for (icalproperty* property : propertiesOf(observance, ICAL_RDATE_PROPERTY)) {
    const icaldatetimeperiodtype date = icalproperty_get_rdate(property);
    if (icaltime_is_null_time(date.time) == 0) add(readingOf(date.time, fault));
  }
  for (icalproperty* property : propertiesOf(observance, ICAL_RRULE_PROPERTY)) {
    const icalrecurrencetype rule = icalproperty_get_rrule(property);
    int64_t end = dayOfDate(2100, 1, 1) * SecondsPerDay;
    if (icaltime_is_null_time(rule.until) == 0) {
      const bool isUtc = icaltime_is_utc(rule.until) != 0;
      end = std::min(end, readingOf(rule.until, fault) + (isUtc ? before : 0));
    }
    visitRecurrences(recurrenceRule(rule, fault), first, dayOfDate(1900, 1, 1) * SecondsPerDay, end,
                     budget, add);
  }
}

EventZone::Definition zoneDefinition(icalcomponent* zone, ComponentFault& fault) {
  WorkBudget budget(WorkPerZone);
  std::vector<ClockChange> changes;
  for (const auto kind : {ICAL_XSTANDARD_COMPONENT, ICAL_XDAYLIGHT_COMPONENT}) {
    for (icalcomponent* each = icalcomponent_get_first_component(zone, kind); each != nullptr;
         each = icalcomponent_get_next_component(zone, kind)) {
      addChanges(each, budget, changes, fault);
    }
  }
  if (changes.empty()) {
    fault.note("it has no clock");
    return {};
  }
  std::stable_sort(changes.begin(), changes.end(),
                   [](const auto& a, const auto& b) { return a.time < b.time; });
  EventZone::Definition definition;
  definition.firstOffset = changes.front().before;
  for (const ClockChange& change : changes)
    definition.changes.push_back({change.time, change.after});
  definition.changes.shrink_to_fit();
  return definition;
}

}  // namespace

void ZoneTable::define(const std::string& component, Definitions& definitions,
                       ComponentFault& fault) {
  const auto known = known_.find(component);
  if (known != known_.end()) {
    definitions.emplace(known->second.name, known->second.definition);
    return;
  }
  const ICalendarComponent parsed = parseComponent(component);
  icalproperty* name = parsed ? firstProperty(parsed.get(), ICAL_TZID_PROPERTY) : nullptr;
  if (name == nullptr) return fault.note("it has no name");
  if (definitions.size() >= MostDefinitions) return fault.note("the file defines too many zones");
  const Known read{icalproperty_get_tzid(name), std::make_shared<const EventZone::Definition>(
                                                    zoneDefinition(parsed.get(), fault))};
  if (fault) return;
  definitions.emplace(read.name, read.definition);
  if (known_.size() < MostKnown && component.size() < LargestKnown) known_.emplace(component, read);
}

std::optional<EventZone> ZoneTable::zoneNamed(const std::string& name,
                                              const Definitions& definitions) {
  if (auto zone = NSTimeZone::timeZoneWithName(name)) return EventZone::named(*std::move(zone));
  const auto defined = definitions.find(name);
  if (defined != definitions.end()) return EventZone::defined(defined->second);
  for (size_t slash = name.find('/'); slash != std::string::npos;
       slash = name.find('/', slash + 1)) {
    if (auto zone = NSTimeZone::timeZoneWithName(std::string_view(name).substr(slash + 1))) {
      return EventZone::named(*std::move(zone));
    }
  }
  if (auto zone = timeZoneWithWindowsName(name)) return EventZone::named(*std::move(zone));
  return std::nullopt;
}
