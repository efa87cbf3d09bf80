#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "Platform/EventKit/EKEventStore.h"

namespace {

std::filesystem::path freshFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "fuzz-calendar-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  return pattern;
}

NSDate date(double seconds) { return NSDate::dateWithTimeIntervalSince1970(seconds); }

}  // namespace

/// Calendar files come from anywhere. Whatever they hold, events lie in what was asked for, end
/// after they start and have identifiers of their own.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::filesystem::path folder = freshFolder();
  static const EKEventStore store(EKCalendarPlaces{{{folder.string()}}, {"me@example.org"}, false});
  std::ofstream(folder / "a.ics", std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const NSDate start = date(1772323200);  // 2026-03-01
  const NSDate end = date(1775952000);    // 42 days later
  std::set<std::string> identifiers;
  store.enumerateEventsMatchingPredicate(
      store.predicateForEventsWithStartDate(start, end, store.calendarsForEntityType(0)),
      [&](const auto& event, bool&) {
        const bool isRight = event->startDate() <= event->endDate() && event->startDate() < end &&
                             event->endDate() >= start &&
                             identifiers.insert(event->eventIdentifier()).second;
        if (!isRight) std::abort();
      });
  return 0;
}
