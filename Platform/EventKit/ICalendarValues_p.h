#pragma once

// For the reading of iCalendar files only: this header shows libical.

#include <libical/ical.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/EventKit/StoredCalendar_p.h"
#include "Platform/Foundation/LibraryHandle.h"

using ICalendarComponent = LibraryHandle<icalcomponent, icalcomponent_free>;

/// Why an event or a zone cannot be used. What is read of it has no meaning then.
class ComponentFault {
 public:
  /// The first reason stays.
  void note(std::string_view reason) {
    if (reason_.empty()) reason_ = reason;
  }
  explicit operator bool() const { return !reason_.empty(); }
  const std::string& reason() const { return reason_; }

 private:
  std::string reason_;
};

/// The zones that the times of a file name, numbered behind those that every file has. What a name
/// means shows when the whole file has been read.
class ZoneNames {
 public:
  uint16_t numberOf(const std::string& name, ComponentFault& fault);
  const std::vector<std::string>& all() const { return names_; }

 private:
  std::map<std::string, uint16_t> numbers_;
  std::vector<std::string> names_;
};

/// A component read from its text. Null if it does not read.
ICalendarComponent parseComponent(const std::string& text);

/// All properties of a kind, in their order; they stay the component's.
std::vector<icalproperty*> propertiesOf(icalcomponent* component, icalproperty_kind kind);
icalproperty* firstProperty(icalcomponent* component, icalproperty_kind kind);

/// Seconds since 1970 as if the time were in UTC. A date or time that there is not is a fault.
int64_t readingOf(const icaltimetype& time, ComponentFault& fault);

/// A time of `property`, in the zone that this names.
StoredTime storedTime(const icaltimetype& time, icalproperty* property, ZoneNames& zones,
                      ComponentFault& fault);

StoredLength storedLength(const icaldurationtype& duration);

/// The rule of an RRULE, without its end. What is no Gregorian rule is a fault.
RecurrenceRule recurrenceRule(const icalrecurrencetype& from, ComponentFault& fault);
