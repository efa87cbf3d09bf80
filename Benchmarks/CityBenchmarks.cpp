// What the whole table of cities costs to search.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <iostream>

#include "Shared/Collectors/CityStatCollector.h"

namespace {

constexpr const char* Sydney = "2147714";

struct Loaded : CityStatCollectorDelegate {
  void cityCollectorFinishedLoading() override { dispatch_semaphore_signal(done); }
  const dispatch_semaphore_t done = dispatch_semaphore_create(0);
};

CityStatCollector_Time& cities() {
  static auto& collector = []() -> auto& {
    auto& shared = CityStatCollector_Time::sharedCityStatCollector();
    const auto loaded = std::make_shared<Loaded>();
    shared.addDelegate(loaded);
    shared.loadDatabase();
    dispatch_semaphore_wait(loaded->done);
    return shared;
  }
  ();
  return collector;
}

void citySearch(benchmark::State& state, const char* text) {
  size_t found = 0;
  for (auto _ : state)
    found = cities().citiesWithMatch(text).size();
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK_CAPTURE(citySearch, sao, "são")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(citySearch, newY, "New Y")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(citySearch, unitedStates, "United States")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(citySearch, nothing, "zzz")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(citySearch, saintPaul, "Saint Paul")->Unit(benchmark::kMillisecond);

void cityLookup(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(cities().cityWithIdentifier(Sydney));
}
BENCHMARK(cityLookup)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (!cities().cityWithIdentifier(Sydney)) {
    std::cerr << "city_benchmarks: there is no database of cities to measure; build the target "
                 "'cities' or set VELMORA_SUPPORT_DIR to its folder\n";
    return EXIT_FAILURE;
  }
  benchmark::RunSpecifiedBenchmarks();
}
