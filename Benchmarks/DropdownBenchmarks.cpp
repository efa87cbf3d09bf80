// What the dropdown costs inside the process, with 20 cities and a month of 200 events.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "Benchmarks/EmptyScreen.h"
#include "Platform/AppKit/Menus/MenuPicture.h"
#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Time/SystemClock.h"
#include "Shared/Collectors/CityStatCollector.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/CalendarStatCollector.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTime.h"

namespace {

constexpr double Scale = 2;
constexpr double Noon = 1795262400;  // 2026-11-21, UTC.

class LoadedCities : public CityStatCollectorDelegate {
 public:
  static void wait() {
    const auto waiting = std::make_shared<LoadedCities>();
    auto& cities = CityStatCollector_Time::sharedCityStatCollector();
    cities.addDelegate(waiting);
    cities.loadDatabase();
    dispatch_semaphore_wait(waiting->loaded_);
  }
  void cityCollectorFinishedLoading() override { dispatch_semaphore_signal(loaded_); }

 private:
  const dispatch_semaphore_t loaded_ = dispatch_semaphore_create(0);
};

/// 200 events in November 2026, in a folder of their own.
class Events {
 public:
  Events() {
    const auto file = folder_ / "events.ics";
    std::ofstream stream(file);
    stream << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
    for (int event = 0; event < 200; ++event) {
      const int day = 1 + event % 30;
      stream << "BEGIN:VEVENT\r\nUID:" << event << "\r\nSUMMARY:Event " << event
             << "\r\nDTSTART:202611" << (day < 10 ? "0" : "") << day
             << "T130000Z\r\nDURATION:PT1H\r\nEND:VEVENT\r\n";
    }
    stream << "END:VCALENDAR\r\n";
    stream.close();
    EKEventStore::setDefaultPlaces([folder = folder_.string()] {
      return EKCalendarPlaces{.folders = {{folder}}, .userAddresses = {}, .includesDesktop = false};
    });
  }
  Events(const Events&) = delete;
  Events& operator=(const Events&) = delete;
  ~Events() { std::filesystem::remove_all(folder_); }

 private:
  static std::filesystem::path makeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "velmora-events-XXXXXX").string();
    return mkdtemp(name.data());
  }

  std::filesystem::path folder_ = makeFolder();
};

/// The dropdown of a program that has just started, never opened.
struct Dropdown {
  Dropdown() {
    SystemClock::install(&clock);
    const PropertyList::Array cities = {
        2643743, 2950159, 1850147, 1283240, 2078025, 3470127, 5128581, 5391959, 2147714, 2193733,
        1261481, 1138958, 3652462, 643492,  2729907, 360630,  1609350, 3448439, 6167865, 2553604};
    setPreferenceOverride("Time_Cities", cities, ZEVPreferences_Time::Domain);
    LoadedCities::wait();
    controller = std::make_shared<StatInterfaceTime_Time>();
    controller->loadClocks();
    const auto collector = CalendarStatCollector::sharedCalendarCollector();
    collector->setEnabled(true);
    collector->checkCalendarAccess();
    controller->calendar().updateCalendar();
    controller->calendar().fetchNow();
  }
  Dropdown(const Dropdown&) = delete;
  Dropdown& operator=(const Dropdown&) = delete;
  ~Dropdown() { SystemClock::install(nullptr); }

  void open() {
    tracker.open(controller->menu(), {{1000, 0}, {100, 22}}, MenuOpening::Request,
                 NSUserInterfaceLayoutDirection::LeftToRight);
    tracker.prepareFrame();
  }

  Events events;
  ManualClock clock{Noon};
  EmptyScreen screen;
  MenuTracker tracker{screen};
  std::shared_ptr<StatInterfaceTime_Time> controller;
};

/// From the request to pixels. Without the fetch of events, which nobody waits for.
void openDropdown(benchmark::State& state) {
  Dropdown dropdown;
  for (auto _ : state) {
    dropdown.open();
    MenuPicture picture(Scale, 1, true);
    picture.render(dropdown.tracker.panel(0), {});
    benchmark::DoNotOptimize(picture.pixels().data());
    state.PauseTiming();
    dropdown.tracker.close();
    state.ResumeTiming();
  }
}
BENCHMARK(openDropdown)->Unit(benchmark::kMillisecond);

/// The share of that which is astronomy.
void sunAndMoonOfTwentyCities(benchmark::State& state) {
  const Dropdown dropdown;
  for (auto _ : state) {
    for (const auto& clock : dropdown.controller->items())
      clock->updateSoonAndMoon();
  }
}
BENCHMARK(sunAndMoonOfTwentyCities)->Unit(benchmark::kMillisecond);

/// A second of the open dropdown, with its pixels.
void tickOfTheOpenDropdown(benchmark::State& state) {
  Dropdown dropdown;
  dropdown.open();
  MenuPicture picture(Scale, 1, true);
  picture.render(dropdown.tracker.panel(0), {});
  double now = Noon;
  double pixels = 0;
  for (auto _ : state) {
    dropdown.clock.setTimeIntervalSince1970(++now);
    dropdown.controller->updateClocks();
    dropdown.tracker.prepareFrame();
    picture.render(dropdown.tracker.panel(0), {});
    pixels += picture.changed().width * picture.changed().height;
  }
  state.counters["pixels"] = benchmark::Counter(pixels, benchmark::Counter::kAvgIterations);
}
BENCHMARK(tickOfTheOpenDropdown)->Unit(benchmark::kMicrosecond);

/// A second of a closed one.
void tickOfTheClosedDropdown(benchmark::State& state) {
  const Dropdown dropdown;
  for (auto _ : state)
    dropdown.controller->updateClocks();
}
BENCHMARK(tickOfTheClosedDropdown)->Unit(benchmark::kNanosecond);

}  // namespace

BENCHMARK_MAIN();
