#pragma once

// For the reading of iCalendar files only: this header shows libical.

#include <libical/ical.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Platform/EventKit/StoredCalendar_p.h"
#include "Platform/Foundation/LibraryHandle.h"

using ICalendarComponent = LibraryHandle<icalcomponent, icalcomponent_free>;

/// Why an event or a zone cannot be used; caught where a file is read.
struct UnusableComponent {
  std::string reason;
};

/// The zones that the times of a file name, numbered behind those that every file has. What a name
/// means shows when the whole file has been read.
class ZoneNames {
 public:
  uint16_t numberOf(const std::string& name);
  const std::vector<std::string>& all() const { return names_; }

 private:
  std::map<std::string, uint16_t> numbers_;
  std::vector<std::string> names_;
};

/// A component read from its text. Throws `UnusableComponent`.
ICalendarComponent parseComponent(const std::string& text);

/// All properties of a kind, in their order; they stay the component's.
std::vector<icalproperty*> propertiesOf(icalcomponent* component, icalproperty_kind kind);
icalproperty* firstProperty(icalcomponent* component, icalproperty_kind kind);

/// Seconds since 1970 as if the time were in UTC. Throws `UnusableComponent` for a date or time
/// that there is not.
int64_t readingOf(const icaltimetype& time);

/// A time of `property`, in the zone that this names.
StoredTime storedTime(const icaltimetype& time, icalproperty* property, ZoneNames& zones);

StoredLength storedLength(const icaldurationtype& duration);

/// The rule of an RRULE, without its end. Throws `UnusableComponent` for what is no Gregorian rule.
RecurrenceRule recurrenceRule(const icalrecurrencetype& rule);
