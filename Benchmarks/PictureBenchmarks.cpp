// What pictures cost: finding, loading, stretching, and the Moon of a minute.

#include <benchmark/benchmark.h>

#include <memory>

#include "Platform/AppKit/Drawing/CairoGraphicsContext.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Targets/VelmoraTime/Classes/MoonPhaseView.h"

namespace {

constexpr double Scale = 2;
constexpr NSSize RowSize{237, 22};

void cachedImageNamed(benchmark::State& state) {
  ZEVImageCache_Time cache;
  cache.imageNamed("stats-calendar-clock-light");
  for (auto _ : state)
    benchmark::DoNotOptimize(cache.imageNamed("stats-calendar-clock-light"));
}
BENCHMARK(cachedImageNamed);

/// From the file to pixels.
void firstLoadAndDraw(benchmark::State& state) {
  BitmapSurface surface({32, 32}, Scale);
  const NSCurrentGraphicsContext current(surface.context());
  for (auto _ : state) {
    ZEVImageCache_Time cache;
    cache.imageNamed("stats-calendar-clock-light")->drawAtPoint({0, 0});
  }
}
BENCHMARK(firstLoadAndDraw);

void plainDraw(benchmark::State& state) {
  ZEVImageCache_Time cache;
  const auto image = cache.imageNamed("stats-calendar-selected");
  BitmapSurface surface(RowSize, Scale);
  const NSCurrentGraphicsContext current(surface.context());
  for (auto _ : state)
    image->drawInRect({{0, 0}, RowSize});
}
BENCHMARK(plainDraw);

void ninePartDraw(benchmark::State& state) {
  ZEVImageCache_Time cache;
  const auto item = cache.imageWithInset("stats-calendar-selected", 6, 6, 6, 6);
  BitmapSurface surface(RowSize, Scale);
  const NSCurrentGraphicsContext current(surface.context());
  for (auto _ : state)
    item->drawInRect({{0, 0}, RowSize});
}
BENCHMARK(ninePartDraw);

struct Moon {
  explicit Moon(int side) : view(NSMakeRect(0, 0, side, side)) {
    view.setSize(side);
    view.setRange(side * 22 / 16);
    view.setLight(side == 16 ? "menubar-moon-light" : "stats-calendar-moon-header-lightmoon");
    view.setDark(side == 16 ? "menubar-moon-dark" : "");
  }
  MoonPhaseView_Time view;
};

/// Once a minute: the picture anew, and its pixels.
void moonRedraw(benchmark::State& state) {
  const auto side = static_cast<int>(state.range(0));
  Moon moon(side);
  BitmapSurface surface({static_cast<double>(side), static_cast<double>(side)}, Scale);
  const NSCurrentGraphicsContext current(surface.context());
  double age = 0;
  for (auto _ : state) {
    age = age > 29 ? 0 : age + 0.01;
    moon.view.showPhase(age, age < 14.7 ? age / 14.7 : 2 - age / 14.7);
    moon.view.image()->drawAtPoint({0, 0});
  }
}
BENCHMARK(moonRedraw)->Arg(16)->Arg(120);

/// Once a second.
void moonDraw(benchmark::State& state) {
  Moon moon(16);
  moon.view.showPhase(5, 0.3);
  BitmapSurface surface({16, 16}, Scale);
  const NSCurrentGraphicsContext current(surface.context());
  for (auto _ : state)
    moon.view.image()->drawAtPoint({0, 0});
}
BENCHMARK(moonDraw);

}  // namespace

BENCHMARK_MAIN();
