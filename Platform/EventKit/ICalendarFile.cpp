#include "Platform/EventKit/ICalendarFile_p.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "Platform/EventKit/ICalendarEvent_p.h"
#include "Platform/EventKit/ICalendarValues_p.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

/// A damaged file must not fill the log.
constexpr int64_t MostReports = 5;
constexpr size_t LongestQuote = 80;

/// Who is meant in a line of the log.
std::string identifierIn(const std::string& component) {
  const size_t name = component.find("\nUID:");
  if (name == std::string::npos) return "without an identifier";
  const size_t start = name + 5;
  return validUtf8(component.substr(
      start, std::min(component.find_first_of("\r\n", start) - start, LongestQuote)));
}

int64_t sizeOf(const StoredEvent& event) {
  constexpr size_t DateSize = sizeof(StoredRecurrence::Date);
  size_t size = sizeof(StoredEvent) + event.texts.size();
  if (event.recurrence) {
    size += sizeof(StoredRecurrence) + sizeof(RecurrenceRule) +
            (event.recurrence->dates.size() + event.recurrence->exceptions.size()) * DateSize;
  }
  return static_cast<int64_t>(size);
}

/// Text as it is meant, of how it is written in a property.
std::string unescaped(std::string_view value) {
  std::string text;
  for (size_t index = 0; index < value.size(); ++index) {
    if (value[index] == '\\' && index + 1 < value.size()) ++index;
    text.push_back(value[index]);
  }
  return text;
}

}  // namespace

ICalendarFile::ICalendarFile(std::string name, ReadingTables& tables)
    : name_(std::move(name)),
      tables_(tables),
      reader_(*this),
      zoneNames_(std::make_unique<ZoneNames>()) {}

ICalendarFile::~ICalendarFile() = default;

std::shared_ptr<const std::vector<EventZone>> ICalendarFile::zones() {
  const std::vector<std::string>& names = zoneNames_->all();
  const bool isShared = definitions_.empty();
  if (isShared) {
    if (const auto known = tables_.zoneLists.find(names); known != tables_.zoneLists.end())
      return known->second;
  }
  bool areKnown = true;
  auto zones = std::make_shared<std::vector<EventZone>>();
  zones->reserve(names.size());
  for (const std::string& name : names) {
    const auto zone = ZoneTable::zoneNamed(name, definitions_);
    if (!zone) report("nobody knows the zone " + validUtf8(name.substr(0, LongestQuote)));
    areKnown = areKnown && zone;
    zones->push_back(zone ? *zone : EventZone::floating());
  }
  // Each file is told of that names a zone which nobody knows.
  if (isShared && areKnown) tables_.zoneLists.emplace(names, zones);
  return zones;
}

StoredCalendar ICalendarFile::finish() {
  reader_.finish();
  calendar_.zones = zones();
  std::stable_sort(calendar_.events.begin(), calendar_.events.end(),
                   [](const StoredEvent& a, const StoredEvent& b) {
                     return std::tuple(a.texts.uid(), a.recurrenceId.has_value()) <
                            std::tuple(b.texts.uid(), b.recurrenceId.has_value());
                   });
  calendar_.events.shrink_to_fit();
  if (faults_ > MostReports) {
    NSLog("calendar: " + name_ + ": " + std::to_string(faults_ - MostReports) + " more faults");
  }
  return std::move(calendar_);
}

void ICalendarFile::event(const std::string& component) {
  if (tables_.room <= 0) return fault("there are too many events", component);
  ComponentFault found;
  StoredEvent event = storedEvent(component, *zoneNames_, tables_.rules, found);
  if (found) return fault(found.reason(), component);
  const int64_t size = sizeOf(event);
  calendar_.size += size;
  tables_.room -= size;
  calendar_.events.push_back(std::move(event));
}

void ICalendarFile::zone(const std::string& component) {
  ComponentFault found;
  tables_.zones.define(component, definitions_, found);
  if (found) report("a zone is left out: " + found.reason());
}

void ICalendarFile::property(std::string_view name, std::string_view value) {
  constexpr size_t LongestValue = 500;
  const std::string text = validUtf8(unescaped(value.substr(0, LongestValue)));
  auto& appearance = calendar_.appearance;
  if (!appearance) appearance = std::make_unique<StoredCalendar::Appearance>();
  std::string& kept = name.ends_with("COLOR") ? appearance->color : appearance->title;
  if (kept.empty()) kept = text;
}

void ICalendarFile::fault(std::string_view reason, const std::string& component) {
  report("the event " + identifierIn(component) + " is left out: " + std::string(reason));
}

void ICalendarFile::report(std::string_view text) {
  if (++faults_ <= MostReports) NSLog("calendar: " + name_ + ": " + std::string(text));
}
