#include "Platform/EventKit/ICalendarReader_p.h"

#include <algorithm>
#include <array>

namespace {

/// Longer lines are cut: thousands of exceptions of one series fit.
constexpr size_t LongestLine = 256 << 10;
constexpr size_t LargestComponent = 512 << 10;

constexpr auto EventProperties = std::to_array<std::string_view>(
    {"ATTENDEE", "DTEND", "DTSTART", "DURATION", "EXDATE", "RDATE", "RECURRENCE-ID", "RRULE",
     "SEQUENCE", "STATUS", "SUMMARY", "UID"});
constexpr auto CalendarProperties =
    std::to_array<std::string_view>({"COLOR", "NAME", "X-APPLE-CALENDAR-COLOR", "X-WR-CALNAME"});

bool isEqual(std::string_view text, std::string_view upperCase) {
  return std::equal(text.begin(), text.end(), upperCase.begin(), upperCase.end(),
                    [](char letter, char upper) {
                      const bool isLower = letter >= 'a' && letter <= 'z';
                      return (isLower ? static_cast<char>(letter - 'a' + 'A') : letter) == upper;
                    });
}

std::string_view nameOf(std::string_view line) {
  const size_t end = line.find_first_of(":;");
  return end == std::string_view::npos ? std::string_view() : line.substr(0, end);
}

/// What stands behind "BEGIN:" and the like.
std::string_view valueOf(std::string_view line) {
  const std::string_view value = line.substr(std::min(line.find(':'), line.size() - 1) + 1);
  const size_t last = value.find_last_not_of(" \t");
  return value.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

template <size_t Size>
std::string_view nameAmong(const std::array<std::string_view, Size>& names, std::string_view name) {
  const auto found = std::find_if(names.begin(), names.end(),
                                  [&](std::string_view each) { return isEqual(name, each); });
  return found == names.end() ? std::string_view() : *found;
}

}  // namespace

void ICalendarReader::feed(std::string_view block) {
  while (!block.empty()) {
    if (atLineStart_) {
      atLineStart_ = false;
      if (block.front() == ' ' || block.front() == '\t') {
        block.remove_prefix(1);
        continue;
      }
      takeLine();
    }
    const size_t end = block.find('\n');
    append(block.substr(0, end));
    if (end == std::string_view::npos) return;
    atLineStart_ = true;
    if (line_.ends_with('\r')) line_.pop_back();
    block.remove_prefix(end + 1);
  }
}

void ICalendarReader::finish() {
  takeLine();
  if (inside_ != Inside::Calendar) abandon("it has no end");
}

void ICalendarReader::append(std::string_view piece) {
  const size_t room = LongestLine - line_.size();
  isCut_ = isCut_ || piece.size() > room;
  line_.append(piece.substr(0, room));
}

void ICalendarReader::takeLine() {
  if (line_.starts_with("\xEF\xBB\xBF")) line_.erase(0, 3);
  // The library that reads the pieces takes a null character for their end.
  std::replace(line_.begin(), line_.end(), '\0', ' ');
  const std::string_view name = nameOf(line_);
  if (isEqual(name, "BEGIN")) {
    begin(valueOf(line_));
  } else if (isEqual(name, "END")) {
    end(valueOf(line_));
  } else if (inside_ == Inside::Zone) {
    keepLine();
  } else if (inside_ == Inside::Event) {
    takeEventLine();
  } else if (nested_ == 0) {
    const std::string_view property = nameAmong(CalendarProperties, name);
    if (!property.empty()) sink_.property(property, valueOf(line_));
  }
  line_.clear();
  isCut_ = false;
}

void ICalendarReader::begin(std::string_view name) {
  const bool isEvent = isEqual(name, "VEVENT");
  if (isEvent || isEqual(name, "VTIMEZONE")) {
    if (inside_ != Inside::Calendar) abandon("it has no end");
    inside_ = isEvent ? Inside::Event : Inside::Zone;
    nested_ = 0;
    component_ = isEvent ? "BEGIN:VEVENT\n" : "BEGIN:VTIMEZONE\n";
  } else if (!isEqual(name, "VCALENDAR")) {
    ++nested_;
    if (inside_ == Inside::Zone) keepLine();
  }
}

void ICalendarReader::end(std::string_view name) {
  if (isEqual(name, "VCALENDAR")) {
    nested_ = 0;
    if (inside_ != Inside::Calendar) abandon("it has no end");
    return;
  }
  const bool isEvent = inside_ == Inside::Event;
  if (inside_ == Inside::Calendar || !isEqual(name, isEvent ? "VEVENT" : "VTIMEZONE")) {
    if (nested_ > 0) --nested_;
    if (inside_ == Inside::Zone) keepLine();
    return;
  }
  if (!fault_.empty()) return abandon(fault_);
  component_ += isEvent ? "END:VEVENT\n" : "END:VTIMEZONE\n";
  isEvent ? sink_.event(component_) : sink_.zone(component_);
  leave();
}

void ICalendarReader::takeEventLine() {
  if (nested_ > 0) return;
  const std::string_view name = nameAmong(EventProperties, nameOf(line_));
  if (name.empty()) return;
  // A long title or list of guests does with its beginning.
  if (isCut_ && name == "ATTENDEE") return;
  if (isCut_ && name != "SUMMARY") fault_ = "one of its lines is too long";
  keepLine();
}

void ICalendarReader::keepLine() {
  if (component_.size() + line_.size() > LargestComponent) {
    fault_ = "it is too large";
  } else {
    component_.append(line_).push_back('\n');
  }
}

void ICalendarReader::leave() {
  inside_ = Inside::Calendar;
  nested_ = 0;
  component_.clear();
  fault_ = {};
}

void ICalendarReader::abandon(std::string_view reason) {
  sink_.fault(reason, component_);
  leave();
}
