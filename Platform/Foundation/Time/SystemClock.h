#pragma once

#include <atomic>
#include <cstdint>

/// The process's one source of the present instant. Everything that asks for the time goes through
/// `NSDate::date()`, which asks the clock installed here. It may be asked from any thread.
class SystemClock {
 public:
  virtual ~SystemClock() = default;

  /// Seconds since 1970-01-01 00:00 UTC.
  virtual double timeIntervalSince1970() const = 0;

  /// The installed clock; the operating system's unless another one was installed.
  static const SystemClock& sharedClock();

  /// Installs `clock`, which must outlive its use; null brings the operating system's back.
  static void install(const SystemClock* clock);
};

/// A clock that stands still until it is moved: for simulated time and for a fixed instant.
/// It counts whole microseconds, so that a whole second is exact.
class ManualClock : public SystemClock {
 public:
  /// Starts at `seconds` since 1970, rounded to the microsecond.
  explicit ManualClock(double seconds);

  double timeIntervalSince1970() const override;

  /// Sets the wall clock, as a user or a time service would. Elapsed time is not affected.
  void setTimeIntervalSince1970(double seconds);

  /// Lets time pass: moves the wall clock and the elapsed time.
  void advanceMicroseconds(int64_t microseconds);

  /// Microseconds that have passed since the clock was made; never runs backwards.
  int64_t elapsedMicroseconds() const { return elapsed_; }

 private:
  std::atomic<int64_t> wall_;
  std::atomic<int64_t> elapsed_ = 0;
};
