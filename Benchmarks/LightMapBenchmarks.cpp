// What the map of day and night costs: its minute, the opening of a city's submenu, and memory.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <memory>
#include <vector>

#include "Benchmarks/EmptyScreen.h"
#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Platform/AppKit/Menus/MenuPicture.h"
#include "Platform/Foundation/Time/SystemClock.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceTimeItem.h"
#include "Targets/VelmoraTime/Map/StatInterfaceLightMap.h"

namespace {

constexpr double Scale = 2;
constexpr NSSize MapSize{320, 160};

/// Noon of 2026-11-21 UTC, until told otherwise.
class Time {
 public:
  Time() { SystemClock::install(&clock_); }
  Time(const Time&) = delete;
  Time& operator=(const Time&) = delete;
  ~Time() { SystemClock::install(nullptr); }
  void advance(double seconds) {
    now_ += seconds;
    clock_.setTimeIntervalSince1970(now_);
  }

 private:
  double now_ = 1795262400;
  ManualClock clock_{now_};
};

/// As the dropdown makes it, at a place of its own.
std::shared_ptr<StatInterfaceTimeItem> makeCity(int64_t index) {
  auto city = std::make_shared<StatInterfaceTimeItem>();
  city->setDetails({index, "City", "City", "", "Land", "Asia/Tokyo", 35.7,
                    static_cast<double>(index * 17 % 360) - 180});
  city->loadLocale();
  city->updateMode();
  city->updateStaticInfo();
  return city;
}

void redraw(StatInterfaceLightMap_Time& map, BitmapSurface& surface) {
  NSGraphicsContext& context = surface.context();
  const NSCurrentGraphicsContext current(context);
  const NSSavedGraphicsState saved(context);
  context.flip(MapSize.height);
  map.displayRect(map.bounds());
}

/// An update to another place of the night, and its pixels.
void updateAndRedraw(benchmark::State& state) {
  Time time;
  StatInterfaceLightMap_Time map({{0, 0}, MapSize});
  map.load();
  BitmapSurface surface(MapSize, Scale);
  for (auto _ : state) {
    time.advance(300);
    map.update();
    redraw(map, surface);
  }
}
BENCHMARK(updateAndRedraw)->Unit(benchmark::kMillisecond);

/// Pixels alone, of a night that has not moved.
void redrawOnly(benchmark::State& state) {
  Time time;
  StatInterfaceLightMap_Time map({{0, 0}, MapSize});
  map.load();
  map.update();
  BitmapSurface surface(MapSize, Scale);
  for (auto _ : state)
    redraw(map, surface);
}
BENCHMARK(redrawOnly)->Unit(benchmark::kMillisecond);

/// From the request to pixels at scale 2; each time another city's, opened for the first time.
void openSubmenu(benchmark::State& state) {
  Time time;
  EmptyScreen screen;
  MenuTracker tracker(screen);
  int64_t index = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const auto city = makeCity(++index);
    state.ResumeTiming();
    tracker.open(city->submenu(), {{1000, 0}, {100, 22}}, MenuOpening::Request,
                 NSUserInterfaceLayoutDirection::LeftToRight);
    tracker.prepareFrame();
    MenuPicture picture(Scale, 1, true);
    picture.render(tracker.panel(0), {});
    benchmark::DoNotOptimize(picture.pixels().data());
    state.PauseTiming();
    tracker.close();
    state.ResumeTiming();
  }
}
BENCHMARK(openSubmenu)->Unit(benchmark::kMillisecond);

/// In bytes, of the heap.
double memoryInUse() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Counters in KiB: what all maps share once one was shown (if this benchmark runs alone), and of
/// 20 more maps what they take before they are opened, each one while it is shown, and all when
/// they are closed.
void memoryOfTwentyMaps(benchmark::State& state) {
  Time time;
  BitmapSurface surface(MapSize, Scale);
  const auto show = [&](StatInterfaceLightMap_Time& map) {
    map.load();
    map.update();
    redraw(map, surface);
  };
  constexpr double KiB = 1024;
  const double atFirst = memoryInUse();
  {
    StatInterfaceLightMap_Time first({{0, 0}, MapSize});
    show(first);
  }
  state.counters["shared"] = (memoryInUse() - atFirst) / KiB;
  for (auto _ : state) {
    std::vector<std::unique_ptr<StatInterfaceLightMap_Time>> maps;
    maps.reserve(20);
    const double before = memoryInUse();
    for (int index = 0; index < 20; ++index)
      maps.push_back(std::make_unique<StatInterfaceLightMap_Time>(NSRect{{0, 0}, MapSize}));
    const double resting = memoryInUse();
    for (const auto& map : maps)
      show(*map);
    const double shown = memoryInUse();
    for (const auto& map : maps)
      map->unload();
    state.counters["resting"] = (resting - before) / KiB;
    state.counters["each shown"] = (shown - resting) / KiB / 20;
    state.counters["closed"] = (memoryInUse() - before) / KiB;
  }
}
BENCHMARK(memoryOfTwentyMaps)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
