#pragma once

#include <chrono>

#include "Platform/Foundation/RunLoop/VirtualRunLoop.h"
#include "Platform/Foundation/Time/SystemClock.h"
#include "Shared/External/Logging/DDLog.h"

/// Seconds since 1970 of a date and time in UTC.
constexpr double utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0,
                     double second = 0) {
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                         std::chrono::day(day)};
  const auto days = std::chrono::sys_days(date).time_since_epoch().count();
  return static_cast<double>(days) * 86400 + hour * 3600 + minute * 60 + second;
}

/// A Saturday: 2026-11-21 15:04:05 UTC.
constexpr double Saturday = utc(2026, 11, 21, 15, 4, 5);

/// The process's clock and main run loop, whose time passes only when a test says so. To be made
/// before everything that registers with the loop.
struct SimulatedTime {
  explicit SimulatedTime(double now = Saturday) : clock(now), loop(clock) {
    SystemClock::install(&clock);
    NSRunLoop::setMainRunLoop(&loop);
  }
  SimulatedTime(const SimulatedTime&) = delete;
  SimulatedTime& operator=(const SimulatedTime&) = delete;
  ~SimulatedTime() {
    // A line on its way may open the log's file and watch it, on this very loop.
    DDLog_Time::flushLog();
    NSRunLoop::setMainRunLoop(nullptr);
    SystemClock::install(nullptr);
  }

  double now() const { return clock.timeIntervalSince1970(); }

  ManualClock clock;
  VirtualRunLoop loop;
};
