// Serial queues, groups, semaphores and the main queue, on real threads.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Dispatch/Dispatch.h"
#include "Tests/Platform/Support/VirtualTime.h"
#include "Tests/Support/ChildProcess.h"

namespace {

/// Returns when all that waits on `queue` now is done.
void drain(const dispatch_queue_t& queue) {
  dispatch_sync(queue, [] {});
}

/// Keeps `queue` busy from before this returns until what it returns is signalled.
dispatch_semaphore_t occupy(const dispatch_queue_t& queue) {
  const auto begun = dispatch_semaphore_create(0);
  const auto release = dispatch_semaphore_create(0);
  dispatch_async(queue, [begun, release] {
    dispatch_semaphore_signal(begun);
    dispatch_semaphore_wait(release);
  });
  dispatch_semaphore_wait(begun);
  return release;
}

/// Runs `work` in so many threads at once, with the number of each.
void runInThreads(size_t count, const std::function<void(size_t)>& work) {
  std::vector<std::jthread> threads;
  for (size_t number = 0; number < count; ++number)
    threads.emplace_back(work, number);
}

// The plain counter and vectors are the check of exclusion: the thread sanitizer sees any overlap.
TEST(SerialQueue, RunsEveryThreadsWorkOnceInOrderAndOneAtATime) {
  constexpr int Works = 5000;
  const auto queue = dispatch_queue_create("order");
  std::array<std::vector<int>, 4> seen;
  int total = 0;
  runInThreads(seen.size(), [&](size_t thread) {
    std::vector<int>& own = seen[thread];
    for (int work = 0; work < Works; ++work) {
      const auto note = [&own, &total, work] {
        own.push_back(work);
        ++total;
      };
      if (work % 7 != 0) {
        dispatch_async(queue, note);
        continue;
      }
      dispatch_sync(queue, note);
      ASSERT_EQ(own.back(), work);
    }
  });
  drain(queue);
  EXPECT_EQ(total, 4 * Works);
  for (const std::vector<int>& own : seen) {
    EXPECT_EQ(own.size(), static_cast<size_t>(Works));
    EXPECT_TRUE(std::ranges::is_sorted(own));
  }
}

TEST(SerialQueue, ExceptionsOfAwaitedWorkReachTheCaller) {
  const auto queue = dispatch_queue_create("throwing");
  const auto fail = [] { throw std::runtime_error("for the caller"); };
  EXPECT_THROW(dispatch_sync(queue, fail), std::runtime_error) << "idle";
  const auto release = occupy(queue);
  std::thread caller([&] { EXPECT_THROW(dispatch_sync(queue, fail), std::runtime_error); });
  dispatch_semaphore_signal(release);
  caller.join();
  drain(queue);
}

// With a fixed number of threads the last of these queues never begins.
TEST(SerialQueue, BlockedWorkDoesNotStarveOtherQueuesAndItsThreadsGo) {
  const auto threads = [] {
    using Tasks = std::filesystem::directory_iterator;
    return std::distance(Tasks("/proc/self/task"), Tasks());
  };
  constexpr size_t Count = 32;
  std::vector<dispatch_semaphore_t> releases;
  while (releases.size() < Count)
    releases.push_back(occupy(dispatch_queue_create("busy")));
  const auto busy = threads();
  for (const auto& release : releases)
    dispatch_semaphore_signal(release);
  EXPECT_TRUE(waitUntil([&] { return threads() <= busy - static_cast<ptrdiff_t>(Count); }));
  // And come back.
  dispatch_semaphore_signal(occupy(dispatch_queue_create("later")));
}

TEST(SerialQueue, LivesUntilItsWorkIsDone) {
  auto queue = dispatch_queue_create("kept");
  const std::weak_ptr<DispatchQueue> watched = queue;
  const auto release = occupy(queue);
  std::atomic<bool> ran = false;
  dispatch_async(queue, [&] { ran = true; });
  queue.reset();
  EXPECT_FALSE(watched.expired());
  dispatch_semaphore_signal(release);
  EXPECT_TRUE(waitUntil([&] { return watched.expired(); }));
  EXPECT_TRUE(ran);
}

TEST(SerialQueue, WorkKnowsItsQueueAndNoOther) {
  static const char key = 0;
  int context = 0;
  const auto outer = dispatch_queue_create("outer");
  const auto inner = dispatch_queue_create("inner");
  dispatch_queue_set_specific(outer, &key, &context);
  std::vector<std::string> seen;
  const auto note = [&] {
    seen.push_back(std::string(dispatch_get_current_label()) +
                   (dispatch_get_specific(&key) == &context ? "*" : ""));
  };
  note();
  std::thread::id ranOn;
  dispatch_sync(inner, [&] { ranOn = std::this_thread::get_id(); });
  EXPECT_EQ(ranOn, std::this_thread::get_id()) << "an idle queue serves the caller's own thread";
  dispatch_async(outer, [&] {
    note();
    dispatch_sync(inner, note);
    note();
  });
  drain(outer);
  dispatch_sync(outer, note);
  dispatch_queue_set_specific(outer, &key, nullptr);
  dispatch_sync(outer, note);
  note();
  const std::vector<std::string> expected = {"",       "outer*", "inner", "outer*",
                                             "outer*", "outer",  ""};
  EXPECT_EQ(seen, expected);
}

TEST(SerialQueueAtTheEnd, WorkThatWouldWaitForItselfEndsTheProcess) {
  const auto queue = dispatch_queue_create("snake");
  const auto through = dispatch_queue_create("tail");
  EXPECT_DEATH(dispatch_sync(queue, [&] { dispatch_sync(queue, [] {}); }), "\"snake\"");
  EXPECT_DEATH(
      dispatch_sync(queue, [&] { dispatch_sync(through, [&] { dispatch_sync(queue, [] {}); }); }),
      "\"snake\"");
}

// Work in progress may use what the end of the process destroys, waiting work may wait for it, and
// work that is stuck is not waited for.
TEST(SerialQueueAtTheEnd, WaitingWorkIsDroppedAtExit) {
  const auto exitWithWork = [] {
    static std::string destroyedAtExit(1000, 'x');
    occupy(dispatch_queue_create("stuck"));
    static const auto queue = dispatch_queue_create("late");
    for (int work = 0; work < 100'000; ++work)
      dispatch_async(queue, [] { destroyedAtExit.push_back('y'); });
    std::exit(0);
  };
  EXPECT_EXIT(exitWithWork(), testing::ExitedWithCode(0), "");
}

// What is made before any queue ends after the threads have; it must not wait for them.
TEST(SerialQueueAtTheEnd, AwaitedWorkRunsBehindTheWorkThatNoThreadWasLeftFor) {
  const auto exitAndWait = [] {
    static dispatch_queue_t queue;
    static std::string notes;
    std::atexit([] {
      dispatch_async(queue, [] { notes += "a"; });
      dispatch_sync(queue, [] { notes += "b"; });
      if (notes.ends_with("ab")) std::_Exit(7);
    });
    queue = dispatch_queue_create("late");
    std::exit(0);
  };
  EXPECT_EXIT(exitAndWait(), testing::ExitedWithCode(7), "");
}

TEST(Group, WaitsForAllItsWorkAndForWorkThatFails) {
  const auto group = dispatch_group_create();
  dispatch_group_wait(group);
  const std::vector<dispatch_queue_t> queues = {dispatch_queue_create("a"),
                                                dispatch_queue_create("b")};
  std::atomic<int> done = 0;
  testing::internal::CaptureStderr();
  for (int work = 0; work < 1000; ++work) {
    dispatch_group_async(group, queues[static_cast<size_t>(work) % 2], [&] {
      ++done;
      throw std::runtime_error("work of a group");
    });
  }
  dispatch_group_wait(group);
  EXPECT_EQ(done, 1000);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("work of a group"), std::string::npos);
}

TEST(Semaphore, LetsNoMoreInThanItsCount) {
  const auto semaphore = dispatch_semaphore_create(2);
  std::atomic<int> inside = 0;
  std::atomic<int> tooMany = 0;
  runInThreads(6, [&](size_t) {
    for (int round = 0; round < 2000; ++round) {
      dispatch_semaphore_wait(semaphore);
      if (++inside > 2) ++tooMany;
      std::this_thread::yield();  // Lets any other in.
      --inside;
      dispatch_semaphore_signal(semaphore);
    }
  });
  EXPECT_EQ(tooMany, 0);
}

TEST(MainQueue, RunsOtherThreadsWorkOnTheMainThread) {
  VirtualTime time;
  const auto worker = dispatch_queue_create("worker");
  std::vector<std::string> seen;
  const auto note = [&seen, mainThread = std::this_thread::get_id()] {
    EXPECT_EQ(std::this_thread::get_id(), mainThread);
    seen.emplace_back(dispatch_get_current_label());
  };
  std::atomic<bool> done = false;
  dispatch_async(worker, [&] {
    dispatch_async(dispatch_get_main_queue(), note);
    dispatch_sync(dispatch_get_main_queue(), note);
    EXPECT_THROW(dispatch_sync(dispatch_get_main_queue(), [] { throw std::runtime_error(""); }),
                 std::runtime_error);
    done = true;
  });
  EXPECT_TRUE(waitUntil([&] {
    time.loop.runPending();
    return done.load();
  }));
  dispatch_sync(dispatch_get_main_queue(), note);
  EXPECT_EQ(seen, std::vector<std::string>(3, "main"));
}

}  // namespace
