// What a log call costs its caller, beside an asynchronous call of spdlog with a queue of the same
// length that blocks when it is full and a file behind it.
//
// A burst fits into the queue, and the time between bursts, in which the file is written, does not
// count. A flood does not fit: its calls cost what a line costs to write.

#include <benchmark/benchmark.h>
#include <spdlog/async.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <stdlib.h>

#include <algorithm>
#include <barrier>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "Shared/External/Logging/DDFileLogger.h"
#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogLine.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t QueueLength = 1000;
constexpr int BurstLines = 800;
constexpr int FloodLines = 200'000;
constexpr const char* Line = "Loaded 1234 events of 7 calendars between today and next month";

/// A folder that goes with the benchmark.
class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "velmora-log-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(path_); }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

class Ours {
 public:
  Ours() {
    logger_->setMaximumFileSize(0);
    DDLog_Time::addLogger(logger_);
    DDLog_Time::flushLog();
  }
  ~Ours() {
    DDLog_Time::removeAllLoggers();
    DDLog_Time::flushLog();
  }

  void log() { DDLogLine(Line); }
  void drain() {
    dispatch_sync(DDLog_Time::loggingQueue(), [] {});
  }

 private:
  Folder folder_;
  std::shared_ptr<DDFileLogger_Time> logger_ = std::make_shared<DDFileLogger_Time>(
      std::make_shared<DDLogFileManagerDefault_Time>(folder_.path().string()));
};

class Spdlog {
 public:
  void log() { logger_->info(Line); }
  /// The line taken out last may still be on its way, which is out of the measured time.
  void drain() {
    while (pool_->queue_size() > 0)
      std::this_thread::yield();
  }

 private:
  Folder folder_;
  std::shared_ptr<spdlog::details::thread_pool> pool_ =
      std::make_shared<spdlog::details::thread_pool>(QueueLength, 1);
  std::shared_ptr<spdlog::async_logger> logger_ = std::make_shared<spdlog::async_logger>(
      "log", std::make_shared<spdlog::sinks::basic_file_sink_mt>((folder_.path() / "log").string()),
      pool_, spdlog::async_overflow_policy::block);
};

/// Seconds that one of `threads` threads needs on the average for its share of the lines, all
/// beginning together.
template <typename Log>
double timeOfLines(Log& log, int threads, int lines) {
  std::vector<double> seconds(static_cast<size_t>(threads));
  std::barrier begin(threads);
  const auto share = [&](double& own) {
    begin.arrive_and_wait();
    const auto start = Clock::now();
    for (int line = 0; line < lines / threads; ++line)
      log.log();
    own = std::chrono::duration<double>(Clock::now() - start).count();
  };
  std::vector<std::thread> others;
  for (size_t index = 1; index < seconds.size(); ++index)
    others.emplace_back(share, std::ref(seconds[index]));
  share(seconds.front());
  for (std::thread& other : others)
    other.join();
  double sum = 0;
  for (const double own : seconds)
    sum += own;
  return sum / threads;
}

template <typename Log>
void burst(benchmark::State& state) {
  Log log;
  const auto threads = static_cast<int>(state.range(0));
  double calls = 0;
  for (auto _ : state) {
    const double seconds = timeOfLines(log, threads, BurstLines);
    state.SetIterationTime(seconds);
    calls += seconds;
    log.drain();
  }
  state.counters["ns/call"] =
      calls * 1e9 / (static_cast<double>(state.iterations()) * BurstLines / threads);
}
BENCHMARK(burst<Ours>)->Arg(1)->Arg(4)->UseManualTime();
BENCHMARK(burst<Spdlog>)->Arg(1)->Arg(4)->UseManualTime();

template <typename Log>
void flood(benchmark::State& state) {
  Log log;
  const auto threads = static_cast<int>(state.range(0));
  double calls = 0;
  double whole = 0;
  for (auto _ : state) {
    const auto start = Clock::now();
    const double seconds = timeOfLines(log, threads, FloodLines);
    state.SetIterationTime(seconds);
    calls += seconds;
    log.drain();
    whole += std::chrono::duration<double>(Clock::now() - start).count();
  }
  state.counters["ns/call"] =
      calls * 1e9 / (static_cast<double>(state.iterations()) * FloodLines / threads);
  state.counters["lines/s"] = static_cast<double>(state.iterations()) * FloodLines / whole;
}
BENCHMARK(flood<Ours>)->Arg(1)->Arg(4)->UseManualTime();
BENCHMARK(flood<Spdlog>)->Arg(1)->Arg(4)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
