// What six weeks with 10,000 events cost, from 20 folders of 500 files. The folders are made where
// VELMORA_CALENDARS says, if it is not there yet; Benchmarks/python-calendars reads the same ones.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "Platform/EventKit/EKEventStore.h"

namespace fs = std::filesystem;

namespace {

constexpr int Folders = 20;
constexpr int FilesPerFolder = 500;
constexpr double Start = 1772323200;  // 2026-03-01
constexpr int Days = 42;

/// Nine of ten take place once in the six weeks, the tenth each week for a year.
std::string eventText(int number) {
  const int day = number % Days;
  const bool isWeekly = number % 10 == 0;
  const std::string date = isWeekly ? "20250" + std::to_string(301 + day % 28)
                                    : "20260" + std::to_string(day < 31 ? 301 + day : 370 + day);
  const std::string hour = std::to_string(10 + number % 10);
  return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:8c0c5e5c-7b2f-4f6e-9d3a-" +
         std::to_string(100'000'000'000 + number) + "\r\nSUMMARY:Meeting about matter " +
         std::to_string(number) + "\r\nDTSTART;TZID=Europe/Berlin:" + date + "T" + hour +
         "0000\r\nDTEND;TZID=Europe/Berlin:" + date + "T" + hour + "3000\r\n" +
         (isWeekly ? "RRULE:FREQ=WEEKLY\r\n" : "") + "DESCRIPTION:" + std::string(200, 'x') +
         "\r\nATTENDEE;PARTSTAT=ACCEPTED:mailto:somebody@example.org\r\n"
         "ATTENDEE;PARTSTAT=NEEDS-ACTION:mailto:somebody.else@example.org\r\n"
         "BEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT15M\r\nEND:VALARM\r\n"
         "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

fs::path calendarFolder() {
  const char* variable = std::getenv("VELMORA_CALENDARS");
  fs::path folder =
      variable != nullptr ? variable : fs::temp_directory_path() / "velmora-calendars";
  if (fs::exists(folder)) return folder;
  for (int number = 0; number < Folders * FilesPerFolder; ++number) {
    const fs::path calendar = folder / ("calendar" + std::to_string(number % Folders));
    fs::create_directories(calendar);
    std::ofstream(calendar / (std::to_string(number) + ".ics"), std::ios::binary)
        << eventText(number);
  }
  return folder;
}

std::unique_ptr<EKEventStore> makeStore() {
  static const fs::path folder = calendarFolder();
  return std::make_unique<EKEventStore>(EKCalendarPlaces{{{folder.string()}}, {}, false});
}

int64_t countEvents(const EKEventStore& store) {
  int64_t count = 0;
  const NSDate start = NSDate::dateWithTimeIntervalSince1970(Start);
  store.enumerateEventsMatchingPredicate(
      store.predicateForEventsWithStartDate(start, start.dateByAddingTimeInterval(Days * 86400.0),
                                            store.calendarsForEntityType(0)),
      [&](const auto&, bool&) { ++count; });
  return count;
}

double usedBytes() {
  const auto used = mallinfo2();
  return static_cast<double>(used.uordblks + used.hblkhd);
}

void firstFetch(benchmark::State& state) {
  int64_t events = 0;
  for (auto _ : state)
    events = countEvents(*makeStore());
  state.counters["events"] = static_cast<double>(events);
}
BENCHMARK(firstFetch)->Unit(benchmark::kMillisecond);

void nextFetch(benchmark::State& state) {
  const double before = usedBytes();
  const auto store = makeStore();
  int64_t events = countEvents(*store);
  state.counters["MiB kept"] = (usedBytes() - before) / (1 << 20);
  for (auto _ : state)
    events = countEvents(*store);
  state.counters["events"] = static_cast<double>(events);
}
BENCHMARK(nextFetch)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
