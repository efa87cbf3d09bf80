// The manual clock, delayed calls of objects, and the main queue: all on simulated time.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <thread>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/RunLoop/NSTimer.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Tests/Platform/Support/VirtualTime.h"

namespace {

class DelayedCall : public testing::Test, protected VirtualTime {
 protected:
  void call(NSObject& target, const char* selector, double delay) {
    target.performSelectorAfterDelay(selector, delay, [this, selector] { notes += selector; });
  }

  std::string notesAfter(double seconds) {
    loop.advance(seconds);
    return notes;
  }

  std::string notes;
};

// The stride is a prime, so the seconds fall on every part of a minute, hour and day; the last is
// 2100-12-31 23:59:59 UTC.
TEST(ManualClock, SecondsAndTheirPartsAreExact) {
  ManualClock clock(0);
  for (int64_t seconds = -86'400; seconds <= 4'133'980'799; seconds += 99'991) {
    clock.setTimeIntervalSince1970(static_cast<double>(seconds));
    clock.advanceMicroseconds(500'000);
    ASSERT_EQ(clock.timeIntervalSince1970(), static_cast<double>(seconds) + 0.5);
    for (int tenth = 0; tenth < 5; ++tenth)
      clock.advanceMicroseconds(100'000);
    ASSERT_EQ(clock.timeIntervalSince1970(), static_cast<double>(seconds + 1));
  }
}

TEST_F(DelayedCall, RunsOnceAtItsMomentAlsoWhereTheWallClockIsSetBack) {
  const auto target = std::make_shared<NSObject>();
  call(*target, "b", 10);
  call(*target, "a", 1);
  EXPECT_EQ(notesAfter(0.999999), "");
  EXPECT_EQ(notesAfter(0.000001), "a");
  clock.setTimeIntervalSince1970(-0.5);
  EXPECT_EQ(NSDate::date().description(), "1969-12-31 23:59:59 +0000");
  EXPECT_EQ(notesAfter(9), "ab");
  EXPECT_EQ(notesAfter(100), "ab");
}

TEST_F(DelayedCall, CancellingDropsOnlyThatSelectorOfThatObject) {
  const auto target = std::make_shared<NSObject>();
  const auto other = std::make_shared<NSObject>();
  call(*target, "x", 1);
  call(*target, "x", 2);
  call(*target, "xy", 3);
  call(*other, "x", 4);
  target->cancelPreviousPerformRequests("x");
  EXPECT_EQ(notesAfter(10), "xyx");
}

TEST_F(DelayedCall, TheTargetMayBeReleasedDuringItsOwnCall) {
  auto target = std::make_shared<NSObject>();
  const std::weak_ptr<NSObject> watched = target;
  target->performSelectorAfterDelay("release", 1, [&] {
    target.reset();
    EXPECT_FALSE(watched.expired());
    notes = "done";
  });
  call(*target, "dropped with its target", 2);
  EXPECT_EQ(notesAfter(10), "done");
  EXPECT_TRUE(watched.expired());
}

TEST_F(DelayedCall, MayRenewAndCancelItselfDuringItsCall) {
  const auto target = std::make_shared<NSObject>();
  std::function<void()> renew = [&] {
    notes += "x";
    target->cancelPreviousPerformRequests("renew");
    if (notes.size() < 3) target->performSelectorAfterDelay("renew", 1, renew);
  };
  target->performSelectorAfterDelay("renew", 1, renew);
  EXPECT_EQ(notesAfter(10), "xxx");
}

TEST_F(DelayedCall, ATimerCallsAgainAndAgainAndMayEndItself) {
  std::unique_ptr<NSTimer> timer = NSTimer::scheduledTimerWithTimeInterval(60, [&] {
    notes += "x";
    if (notes.size() == 5) timer.reset();
  });
  EXPECT_EQ(notesAfter(59.999), "");
  EXPECT_EQ(notesAfter(120.002), "xxx");
  // A loop that was busy for three intervals owes one call, and then keeps the old beat.
  clock.advanceMicroseconds(190'000'000);
  loop.runPending();
  EXPECT_EQ(notes, "xxxx");
  EXPECT_EQ(notesAfter(49.998), "xxxx");
  EXPECT_EQ(notesAfter(0.001), "xxxxx");
  EXPECT_EQ(notesAfter(600), "xxxxx");
}

// What a setting or a sum may make of a delay. An interval is a tenth of a millisecond at least.
TEST_F(DelayedCall, DelaysOutOfAnyRangeAreNeitherLostNorEarly) {
  struct Case {
    double seconds;
    int calls;       ///< Of a delayed call, in a millisecond.
    int timerCalls;  ///< Of a timer with such an interval.
  };
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  // Nanoseconds overflow at 9.3e9.
  for (const auto& [seconds, calls, timerCalls] :
       {Case{0, 1, 10}, Case{-5, 1, 10}, Case{-1e300, 1, 10}, Case{std::nan(""), 1, 10},
        Case{1e-5, 1, 10}, Case{1, 0, 0}, Case{9.3e9, 0, 0}, Case{1e12, 0, 0},
        Case{Infinity, 0, 0}}) {
    SCOPED_TRACE(seconds);
    const auto target = std::make_shared<NSObject>();
    notes.clear();
    call(*target, "x", seconds);
    int timed = 0;
    const auto timer = NSTimer::scheduledTimerWithTimeInterval(seconds, [&] { ++timed; });
    loop.advance(0.001);
    EXPECT_EQ(notes.size(), static_cast<size_t>(calls));
    EXPECT_EQ(timed, timerCalls);
  }
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, std::numeric_limits<int64_t>::max()),
                 dispatch_get_main_queue(), [] { FAIL() << "292 years too early"; });
  loop.advance(1);
}

TEST_F(DelayedCall, AQueueRunsWorkAfterATime) {
  const auto worker = dispatch_queue_create("worker ");
  const auto note = [this] { notes += dispatch_get_current_label(); };
  loop.advance(3);
  const dispatch_time_t base = dispatch_time(DISPATCH_TIME_NOW, 2'000'000'000);
  dispatch_after(dispatch_time(base, 1'000'000'000), worker,
                 [&, main = std::this_thread::get_id()] {
                   EXPECT_NE(std::this_thread::get_id(), main);
                   note();
                 });
  dispatch_after(base, dispatch_get_main_queue(), note);
  dispatch_after(DISPATCH_TIME_NOW, dispatch_get_main_queue(), [this] { notes += "now "; });
  EXPECT_EQ(notes, "");
  for (const auto& [seconds, expected] : {std::pair{1.999999, "now "},
                                          {0.000001, "now main"},
                                          {0.999999, "now main"},
                                          {0.000001, "now mainworker "}}) {
    loop.advance(seconds);
    dispatch_sync(worker, [] {});
    EXPECT_EQ(notes, expected);
  }
}

}  // namespace
