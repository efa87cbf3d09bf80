#include "Platform/EventKit/ICalendarEvent_p.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Platform/EventKit/MailAddress_p.h"
#include "Platform/EventKit/RecurrenceDays_p.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

/// Longer titles are cut; no row shows so much.
constexpr size_t LongestTitle = 500;
constexpr size_t LongestIdentifier = 1000;
/// Guests beyond are not looked at.
constexpr size_t MostAttendeeBytes = 64 << 10;
constexpr size_t MostDates = 20000;
constexpr size_t MostKnownRules = 1000;

std::string text(const char* value) { return value == nullptr ? "" : validUtf8(value); }

/// One line without blanks around it; control characters are blanks.
std::string lineOf(std::string text, size_t longest) {
  for (char& character : text) {
    if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') character = ' ';
  }
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  return text.size() <= longest ? text : substringToIndex(text, longest);
}

void noteFaults(icalcomponent* component, ComponentFault& fault) {
  // What says when an event takes place must read; the rest may be missing.
  constexpr auto Needed = std::to_array<const char*>(
      {" in DTSTART ", " in DTEND ", " in DURATION ", " in RRULE ", " in RECURRENCE-ID "});
  for (icalproperty* error : propertiesOf(component, ICAL_XLICERROR_PROPERTY)) {
    const std::string said = text(icalproperty_get_xlicerror(error));
    for (const char* property : Needed) {
      if (said.find(property) != std::string::npos) {
        fault.note(lineOf(said, LongestTitle));
      }
    }
  }
}

EKEventStatus statusOf(icalcomponent* component) {
  for (icalproperty* property : propertiesOf(component, ICAL_STATUS_PROPERTY)) {
    switch (icalproperty_get_status(property)) {
      case ICAL_STATUS_CONFIRMED:
        return EKEventStatus::Confirmed;
      case ICAL_STATUS_TENTATIVE:
        return EKEventStatus::Tentative;
      case ICAL_STATUS_CANCELLED:
        return EKEventStatus::Canceled;
      default:
        break;
    }
  }
  return EKEventStatus::None;
}

EKParticipantStatus participantStatusOf(icalproperty* attendee) {
  icalparameter* status = icalproperty_get_first_parameter(attendee, ICAL_PARTSTAT_PARAMETER);
  if (status == nullptr) return EKParticipantStatus::Pending;
  switch (icalparameter_get_partstat(status)) {
    case ICAL_PARTSTAT_NEEDSACTION:
      return EKParticipantStatus::Pending;
    case ICAL_PARTSTAT_ACCEPTED:
      return EKParticipantStatus::Accepted;
    case ICAL_PARTSTAT_DECLINED:
      return EKParticipantStatus::Declined;
    case ICAL_PARTSTAT_TENTATIVE:
      return EKParticipantStatus::Tentative;
    case ICAL_PARTSTAT_DELEGATED:
      return EKParticipantStatus::Delegated;
    case ICAL_PARTSTAT_COMPLETED:
      return EKParticipantStatus::Completed;
    case ICAL_PARTSTAT_INPROCESS:
      return EKParticipantStatus::InProcess;
    default:
      return EKParticipantStatus::Unknown;
  }
}

std::string attendeesOf(icalcomponent* component) {
  std::string all;
  for (icalproperty* property : propertiesOf(component, ICAL_ATTENDEE_PROPERTY)) {
    icalparameter* mail = icalproperty_get_first_parameter(property, ICAL_EMAIL_PARAMETER);
    const std::string address = mailAddress(text(
        mail != nullptr ? icalparameter_get_email(mail) : icalproperty_get_attendee(property)));
    if (all.size() + address.size() > MostAttendeeBytes) break;
    all.push_back(static_cast<char>('0' + static_cast<int>(participantStatusOf(property))));
    all.append(lineOf(address, LongestIdentifier)).push_back('\n');
  }
  return all;
}

StoredRecurrence::Rule storedRule(icalproperty* property, const StoredTime& start, RuleTable& known,
                                  ZoneNames& zones, ComponentFault& fault) {
  const icalrecurrencetype parsed = icalproperty_get_rrule(property);
  StoredRecurrence::Rule stored;
  if (known.size() > MostKnownRules) known.clear();
  std::weak_ptr<const RecurrenceRule>& kept =
      known[text(icalproperty_get_value_as_string(property))];
  stored.rule = kept.lock();
  if (!stored.rule) {
    stored.rule = std::make_shared<const RecurrenceRule>(recurrenceRule(parsed, fault));
    if (!fault) kept = stored.rule;
  }
  if (icaltime_is_null_time(parsed.until) == 0) {
    StoredTime until = storedTime(parsed.until, property, zones, fault);
    if (start.isDate) {
      until = {dayOfTime(until.reading) * SecondsPerDay, start.zone, true};
    } else if (until.zone == StoredCalendar::FloatingZone) {
      until.zone = start.zone;  // An end without a zone is on the clock of the start.
    }
    stored.until = until;
  }
  return stored;
}

StoredRecurrence::Date storedDate(icalproperty* property, ZoneNames& zones, ComponentFault& fault) {
  const icaldatetimeperiodtype value = icalproperty_get_rdate(property);
  if (icaltime_is_null_time(value.time) == 0) {
    return {storedTime(value.time, property, zones, fault), {}, {}};
  }
  StoredRecurrence::Date date{storedTime(value.period.start, property, zones, fault), {}, {}};
  if (icaltime_is_null_time(value.period.end) != 0) {
    date.length = storedLength(value.period.duration);
  } else {
    date.end = storedTime(value.period.end, property, zones, fault);
  }
  return date;
}

std::unique_ptr<const StoredRecurrence> recurrenceOf(icalcomponent* component,
                                                     const StoredTime& start, RuleTable& known,
                                                     ZoneNames& zones, ComponentFault& fault) {
  const auto rules = propertiesOf(component, ICAL_RRULE_PROPERTY);
  const auto dates = propertiesOf(component, ICAL_RDATE_PROPERTY);
  const auto exceptions = propertiesOf(component, ICAL_EXDATE_PROPERTY);
  if (rules.empty() && dates.empty() && exceptions.empty()) return nullptr;
  if (dates.size() + exceptions.size() > MostDates) {
    fault.note("it has too many dates");
    return nullptr;
  }
  auto recurrence = std::make_unique<StoredRecurrence>();
  for (icalproperty* property : rules)
    recurrence->rules.push_back(storedRule(property, start, known, zones, fault));
  for (icalproperty* property : dates)
    recurrence->dates.push_back(storedDate(property, zones, fault));
  for (icalproperty* property : exceptions)
    recurrence->exceptions.push_back(
        storedTime(icalproperty_get_exdate(property), property, zones, fault));
  return recurrence;
}

}  // namespace

StoredEvent storedEvent(const std::string& component, ZoneNames& zones, RuleTable& rules,
                        ComponentFault& fault) {
  const ICalendarComponent parsed = parseComponent(component);
  if (!parsed) {
    fault.note("it does not read");
    return {};
  }
  noteFaults(parsed.get(), fault);
  icalproperty* start = firstProperty(parsed.get(), ICAL_DTSTART_PROPERTY);
  if (start == nullptr) {
    fault.note("it has no start");
    return {};
  }
  StoredEvent event;
  event.start = storedTime(icalproperty_get_dtstart(start), start, zones, fault);
  if (icalproperty* end = firstProperty(parsed.get(), ICAL_DTEND_PROPERTY)) {
    event.end = storedTime(icalproperty_get_dtend(end), end, zones, fault);
  } else if (icalproperty* duration = firstProperty(parsed.get(), ICAL_DURATION_PROPERTY)) {
    event.length = storedLength(icalproperty_get_duration(duration));
  }
  std::string identifier;
  std::string name;
  if (icalproperty* uid = firstProperty(parsed.get(), ICAL_UID_PROPERTY)) {
    identifier = lineOf(text(icalproperty_get_uid(uid)), LongestIdentifier);
  }
  if (icalproperty* title = firstProperty(parsed.get(), ICAL_SUMMARY_PROPERTY)) {
    name = lineOf(text(icalproperty_get_summary(title)), LongestTitle);
  }
  if (icalproperty* instance = firstProperty(parsed.get(), ICAL_RECURRENCEID_PROPERTY)) {
    event.recurrenceId =
        storedTime(icalproperty_get_recurrenceid(instance), instance, zones, fault);
  }
  if (icalproperty* sequence = firstProperty(parsed.get(), ICAL_SEQUENCE_PROPERTY)) {
    event.sequence = icalproperty_get_sequence(sequence);
  }
  event.status = statusOf(parsed.get());
  event.texts = {identifier, name, attendeesOf(parsed.get())};
  event.recurrence = recurrenceOf(parsed.get(), event.start, rules, zones, fault);
  return event;
}
