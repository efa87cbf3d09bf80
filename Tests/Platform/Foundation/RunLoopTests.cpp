// One suite for both run loops: what holds on simulated time must hold on the desktop's loop.

#include <glib.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Platform/Foundation/Files/FileDescriptor.h"
#include "Tests/Platform/Support/VirtualTime.h"
#include "Tests/Support/ChildProcess.h"

namespace {

constexpr int64_t Microsecond = 1000;
constexpr int64_t Millisecond = 1000 * Microsecond;

struct OnVirtualTime : VirtualTime {
  /// Lets time pass while the loop is kept from running.
  void block(int64_t nanoseconds) { clock.advanceMicroseconds(nanoseconds / Microsecond); }
};

struct OnDesktop {
  void block(int64_t nanoseconds) {
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    for (const int64_t end = loop.now() + nanoseconds; loop.now() < end;) {
    }
  }
};

template <typename Kind>
class RunLoop : public testing::Test {
 protected:
  void scheduleNoting(int64_t deadline, const std::string& note) {
    loop.performBlockAt(deadline, [this, note] { notes += note; });
  }

  /// Serves what is due now, and tells what has been noted since the last time.
  std::string pass() {
    loop.runPending();
    return std::exchange(notes, "");
  }

  void runUntil(int64_t deadline) {
    loop.performBlockAt(deadline, [this] { loop.stop(); });
    loop.run();
  }

  Kind kind;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  std::string notes;
};

using Kinds = testing::Types<OnVirtualTime, OnDesktop>;
TYPED_TEST_SUITE(RunLoop, Kinds);

// In time, and when all of it is late.
TYPED_TEST(RunLoop, RunsInTheOrderOfMomentsAndThenOfScheduling) {
  for (const int64_t delay : {int64_t{0}, 4 * Millisecond}) {
    this->notes.clear();
    const int64_t start = this->loop.now() + 1 * Millisecond;
    this->scheduleNoting(start + 2 * Millisecond, "d");
    this->scheduleNoting(start, "a");
    this->scheduleNoting(start + 1 * Millisecond, "c");
    this->scheduleNoting(start, "b");
    this->kind.block(delay);
    this->runUntil(start + 3 * Millisecond);
    EXPECT_EQ(this->notes, "abcd") << delay;
  }
}

TYPED_TEST(RunLoop, IsNeverEarly) {
  for (const int64_t wait : {int64_t{1}, int64_t{999}, int64_t{1000}, int64_t{1001},
                             1 * Millisecond - 1, 2 * Millisecond + 1}) {
    const int64_t deadline = this->loop.now() + wait;
    this->runUntil(deadline);
    EXPECT_GE(this->loop.now(), deadline) << wait;
    if (std::is_same_v<TypeParam, OnVirtualTime>) {
      EXPECT_LT(this->loop.now(), deadline + Microsecond) << wait;
    }
  }
}

TYPED_TEST(RunLoop, APastDeadlineIsTheNextPassAndAFarOneIsToCome) {
  const auto timer = this->loop.scheduleAt(std::numeric_limits<int64_t>::max(), [] { FAIL(); });
  for (const int64_t deadline : {std::numeric_limits<int64_t>::min(), int64_t{-1}, int64_t{0}}) {
    this->scheduleNoting(deadline, "x");
    EXPECT_EQ(this->notes, "") << deadline;
    EXPECT_EQ(this->pass(), "x") << deadline;
  }
  EXPECT_TRUE(timer);
}

TYPED_TEST(RunLoop, ForgetsWhatHasLostItsHandle) {
  const int64_t start = this->loop.now();
  auto first = this->loop.scheduleAt(start, [] { FAIL(); });
  auto moved = std::move(first);
  auto replaced = this->loop.scheduleAt(start, [] { FAIL(); });
  replaced = this->loop.scheduleAt(start, [this] { this->notes += "new "; });
  this->scheduleNoting(start, "kept");
  first.reset();
  EXPECT_TRUE(moved);
  moved.reset();
  moved.reset();
  EXPECT_FALSE(moved);
  EXPECT_EQ(this->pass(), "new kept");
  replaced.reset();
  EXPECT_FALSE(this->loop.runPending());
}

TYPED_TEST(RunLoop, ACallbackMayCancelItselfAndTheNextOne) {
  const int64_t start = this->loop.now();
  NSRunLoop::Timer own;
  NSRunLoop::Timer next;
  own = this->loop.scheduleAt(start, [&] {
    own.reset();
    next.reset();
  });
  next = this->loop.scheduleAt(start, [] { FAIL(); });
  this->scheduleNoting(start, "last");
  EXPECT_EQ(this->pass(), "last");
}

TYPED_TEST(RunLoop, ACallbackThatRenewsItselfDoesNotHoldThePass) {
  int calls = 0;
  std::function<void()> renew = [&] {
    if (++calls < 1000) this->loop.performBlock(renew);
  };
  this->loop.performBlock(renew);
  for (int pass = 1; pass <= 2; ++pass) {
    EXPECT_TRUE(this->loop.runPending());
    EXPECT_EQ(calls, pass);
  }
  calls = 1000;
  this->loop.runPending();
}

TYPED_TEST(RunLoop, GoesOnAfterAnExceptionAndReportsItOnce) {
  testing::internal::CaptureStderr();
  const int64_t start = this->loop.now();
  for (int round = 0; round < 3; ++round) {
    this->loop.performBlockAt(start, [] { throw std::runtime_error("a fault"); });
    this->loop.performBlockAt(start, [] { throw 7; });
    this->scheduleNoting(start, "x");
  }
  this->loop.runPending();
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_EQ(this->notes, "xxx");
  EXPECT_NE(log.find("a fault"), std::string::npos);
  EXPECT_EQ(log.find("a fault"), log.rfind("a fault"));
}

TYPED_TEST(RunLoop, StopEndsTheInnermostRunBehindItsCallback) {
  const int64_t start = this->loop.now();
  this->loop.performBlockAt(start, [this] {
    this->notes += "(";
    this->runUntil(this->loop.now());
    this->notes += ")";
  });
  this->scheduleNoting(start, "inner");
  this->loop.performBlockAt(start + 1 * Millisecond, [this] { this->loop.stop(); });
  this->scheduleNoting(start + 1 * Millisecond, "after");
  this->loop.run();
  EXPECT_EQ(this->notes, "(inner)");
  this->runUntil(this->loop.now());
  EXPECT_EQ(this->notes, "(inner)after");
}

TYPED_TEST(RunLoop, AStopWithoutARunLeavesNothingUndone) {
  const int64_t start = this->loop.now();
  this->loop.performBlockAt(start, [this] { this->loop.stop(); });
  this->scheduleNoting(start, "a");
  this->loop.runPending();
  this->scheduleNoting(start, "b");
  this->loop.runPending();
  this->scheduleNoting(start, "c");
  this->runUntil(start);
  EXPECT_EQ(this->notes, "abc");
}

// What a callback holds goes with it, and may itself cancel others while it goes.
TYPED_TEST(RunLoop, ReleasesWhatACallbackHeld) {
  const int64_t start = this->loop.now();
  auto other = this->loop.scheduleAt(start, [] { FAIL(); });
  const auto canceller = [&] {
    return std::shared_ptr<void>(nullptr, [&](void*) {
      other.reset();
      this->notes += "gone ";
    });
  };
  this->loop.scheduleAt(start, [held = canceller()] {}).reset();
  EXPECT_EQ(this->notes, "gone ");
  this->loop.performBlockAt(start, [held = canceller()] {});
  EXPECT_EQ(this->pass(), "gone gone ");
}

// A hand-over that is lost, doubled or overtakes another of its thread.
TYPED_TEST(RunLoop, TakesWorkFromOtherThreadsInTheirOrder) {
  constexpr int Threads = 4;
  constexpr int Works = 500;
  std::array<std::vector<int>, Threads> seen;
  std::vector<std::jthread> threads;
  for (std::vector<int>& own : seen) {
    threads.emplace_back([&] {
      for (int work = 0; work < Works; ++work)
        this->loop.performBlock([&own, work] { own.push_back(work); });
    });
  }
  EXPECT_TRUE(waitUntil([&] {
    this->loop.runPending();
    return std::ranges::all_of(seen, [](const auto& own) { return own.size() == Works; });
  }));
  for (const std::vector<int>& own : seen)
    EXPECT_TRUE(std::ranges::is_sorted(own));
}

TYPED_TEST(RunLoop, WakesForWorkFromAnotherThread) {
  std::jthread worker;
  this->loop.performBlock([&] {
    worker = std::jthread([&] { this->loop.performBlock([&] { this->loop.stop(); }); });
    if (std::is_same_v<TypeParam, OnVirtualTime>) worker.join();  // It never waits.
  });
  this->loop.run();
}

TYPED_TEST(RunLoop, WatchesADescriptorUntilItsHandleGoes) {
  const FileDescriptor event(eventfd(0, EFD_CLOEXEC));
  auto watch = this->loop.watchDescriptor(event.get(), [&] {
    eventfd_t count = 0;
    eventfd_read(event.get(), &count);
    this->notes += std::to_string(count);
  });
  EXPECT_EQ(this->pass(), "");
  eventfd_write(event.get(), 5);
  EXPECT_EQ(this->pass(), "5");
  watch.reset();
  eventfd_write(event.get(), 6);
  EXPECT_EQ(this->pass(), "");
}

// Both have something to read when the first one ends them.
TYPED_TEST(RunLoop, AWatchMayEndItselfAndTheNextOne) {
  const FileDescriptor event(eventfd(1, EFD_CLOEXEC));
  NSRunLoop::Watch own;
  NSRunLoop::Watch next;
  own = this->loop.watchDescriptor(event.get(), [&] {
    own.reset();
    next.reset();
    this->notes += "a";
  });
  next = this->loop.watchDescriptor(event.get(), [] { FAIL(); });
  EXPECT_EQ(this->pass(), "a");
}

// A handle may outlive its loop, and so may what a callback holds.
TEST(VirtualRunLoopEnd, LeavesItsHandlesHarmless) {
  ManualClock clock(0);
  auto loop = std::make_unique<VirtualRunLoop>(clock);
  auto inner = std::make_shared<NSRunLoop::Timer>(loop->scheduleAt(2, [] {}));
  const auto outer = loop->scheduleAt(1, [inner] {});
  const auto watch = loop->watchDescriptor(STDIN_FILENO, [inner] {});
  loop.reset();
  EXPECT_EQ(inner.use_count(), 1);
}

// Toolkits draw at GLib's `G_PRIORITY_HIGH_IDLE` + 20.
TEST(DesktopRunLoop, WorkWithoutEndLetsAToolkitDraw) {
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  static bool isDrawn;
  isDrawn = false;
  const auto draw = [](gpointer) -> gboolean {
    isDrawn = true;
    return G_SOURCE_REMOVE;
  };
  g_idle_add_full(G_PRIORITY_HIGH_IDLE + 20, draw, nullptr, nullptr);
  int works = 0;
  std::function<void()> renew = [&] {
    ++works;
    isDrawn || works == 1000 ? loop.stop() : loop.performBlock(renew);
  };
  loop.performBlock(renew);
  loop.run();
  EXPECT_LT(works, 1000);
}

// The hand-over wakes the loop once, and then it waits: a wait that is rounded down, or left out,
// looks on and on.
TEST(DesktopRunLoop, WaitsForATimerAndDoesNotSpin) {
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  static int polls;
  g_main_context_set_poll_func(nullptr, [](GPollFD* descriptors, guint count, int milliseconds) {
    ++polls;
    return g_poll(descriptors, count, milliseconds);
  });
  for (int timer = 1; timer <= 10; ++timer) {
    polls = 0;
    loop.performBlockAt(loop.now() + 2 * Millisecond + timer * 90 * Microsecond,
                        [&] { loop.stop(); });
    loop.run();
    EXPECT_LE(polls, 2) << timer;
  }
  g_main_context_set_poll_func(nullptr, nullptr);
}

// Some libraries, as they end, serve the context until nothing is left in it.
TEST(DesktopRunLoop, HasNothingPendingOnceItIsStopped) {
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  int servings = 0;
  loop.performBlock([&] {
    loop.stop();
    loop.performBlock([] {});
    while (g_main_context_pending(nullptr) && ++servings < 100)
      g_main_context_iteration(nullptr, FALSE);
  });
  loop.run();
  EXPECT_LT(servings, 100);
}

}  // namespace
