// Timers at a date, on simulated time, and watches on real files.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/Files/FileDescriptor.h"
#include "Tests/Platform/Support/VirtualTime.h"
#include "Tests/Support/TestEnvironment.h"

namespace fs = std::filesystem;

namespace {

constexpr double Start = 1'700'000'000;
constexpr double Hour = 3600;
constexpr double Day = 24 * Hour;

class Source : public testing::Test, protected VirtualTime {
 protected:
  Source() : VirtualTime(Start) {}

  /// Lets simulated time pass, then serves the queue.
  int callsAfter(double seconds) {
    loop.advance(seconds);
    dispatch_sync(queue, [] {});
    return calls;
  }

  DispatchTimer timerAfter(double seconds) {
    return {NSDate::dateWithTimeIntervalSince1970(Start + seconds), queue, [this] { ++calls; }};
  }

  dispatch_queue_t queue = dispatch_queue_create("source");
  std::atomic<int> calls = 0;
};

using Timer = Source;

TEST_F(Timer, FiresOnceAtItsDate) {
  const DispatchTimer timer = timerAfter(30 * Day);
  EXPECT_EQ(callsAfter(30 * Day - 0.001), 0);
  EXPECT_EQ(callsAfter(0.001), 1);
  EXPECT_EQ(callsAfter(60 * Day), 1);
  const DispatchTimer past = timerAfter(-Day);
  EXPECT_EQ(callsAfter(0), 2) << "a date in the past fires at once";
}

// As after a suspend, in which the run loop's own clock stands still.
TEST_F(Timer, FollowsAClockSetForwardWithinAnHour) {
  const DispatchTimer timer = timerAfter(30 * Day);
  EXPECT_EQ(callsAfter(Day), 0);
  clock.setTimeIntervalSince1970(Start + 30 * Day);
  EXPECT_EQ(callsAfter(Hour), 1);
}

TEST_F(Timer, IsNotEarlyAfterAClockSetBack) {
  const DispatchTimer timer = timerAfter(2 * Day);
  EXPECT_EQ(callsAfter(Day), 0);
  clock.setTimeIntervalSince1970(Start);
  EXPECT_EQ(callsAfter(2 * Day - 1), 0);
  EXPECT_EQ(callsAfter(1), 1);
}

// What the handler uses must outlive it: the handle's end waits.
TEST_F(Timer, TheEndOfItsHandleWaitsForARunningHandler) {
  const auto begun = dispatch_semaphore_create(0);
  const auto release = dispatch_semaphore_create(0);
  std::atomic<bool> ended = false;
  DispatchTimer timer(NSDate::date(), queue, [&] {
    dispatch_semaphore_signal(begun);
    dispatch_semaphore_wait(release);
    ended = true;
  });
  loop.runPending();
  dispatch_semaphore_wait(begun);
  std::thread other([&] {
    timer.reset();
    EXPECT_TRUE(ended);
  });
  dispatch_semaphore_signal(release);
  other.join();
}

constexpr uint32_t Both = DISPATCH_VNODE_DELETE | DISPATCH_VNODE_RENAME;

class FileWatch : public Source {
 protected:
  /// Of a file that is written first.
  DispatchFileWatch watch(const fs::path& path, uint32_t events = Both) {
    std::ofstream(path) << "text";
    const FileDescriptor opened(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return {opened.get(), events, queue, [this] { ++calls; }};
  }

  const fs::path file = testFolder() / "file";
};

TEST_F(FileWatch, TellsWhatWasAskedForOnly) {
  struct Case {
    const char* name;
    uint32_t events;
    void (*change)(const fs::path& file);
    int calls;
  };
  const auto remove = [](const fs::path& path) { fs::remove(path); };
  const auto rename = [](const fs::path& path) { fs::rename(path, path.string() + "-moved"); };
  const auto replace = [](const fs::path& path) {
    std::ofstream(path.string() + "-new") << "other";
    fs::rename(path.string() + "-new", path);
  };
  const auto write = [](const fs::path& path) {
    std::ofstream(path, std::ios::app) << "more";
    chmod(path.c_str(), 0600);
  };
  const auto link = [](const fs::path& path) {
    fs::create_hard_link(path, path.string() + "-link");
    fs::remove(path);
  };
  for (const Case& entry : {Case{"deleted", Both, remove, 1}, Case{"renamed", Both, rename, 1},
                            Case{"replaced", Both, replace, 1}, Case{"written", Both, write, 0},
                            Case{"has another name left", Both, link, 0},
                            Case{"deleted, not asked", DISPATCH_VNODE_RENAME, remove, 0},
                            Case{"renamed, not asked", DISPATCH_VNODE_DELETE, rename, 0}}) {
    const fs::path path = testFolder() / entry.name;
    calls = 0;
    const DispatchFileWatch watched = watch(path, entry.events);
    entry.change(path);
    callsAfter(1);
    EXPECT_EQ(callsAfter(1), entry.calls) << entry.name;
  }
}

TEST_F(FileWatch, WatchesTheOpenFileNotItsPath) {
  const DispatchFileWatch watched = watch(file, DISPATCH_VNODE_DELETE);
  fs::rename(file, testFolder() / "elsewhere");
  std::ofstream(file) << "another file";
  fs::remove(file);
  EXPECT_EQ(callsAfter(1), 0);
  fs::remove(testFolder() / "elsewhere");
  EXPECT_EQ(callsAfter(1), 1);
}

TEST_F(FileWatch, ItsHandlerAndATimersThatWaitOnTheQueueDoNotStartOnceTheHandlesHaveGone) {
  const auto release = dispatch_semaphore_create(0);
  dispatch_async(queue, [release] { dispatch_semaphore_wait(release); });
  {
    const DispatchTimer later = timerAfter(2);
    DispatchTimer replaced = timerAfter(1);
    const DispatchFileWatch watched = watch(file);
    fs::remove(file);
    loop.advance(1);
    replaced = {};
  }
  dispatch_semaphore_signal(release);
  EXPECT_EQ(callsAfter(1), 0);
}

TEST_F(FileWatch, ItsHandlerMayDropIt) {
  std::ofstream(file) << "text";
  const FileDescriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  DispatchFileWatch watched(opened.get(), DISPATCH_VNODE_DELETE, queue, [&] {
    watched = {};
    ++calls;
  });
  fs::remove(file);
  EXPECT_EQ(callsAfter(1), 1);
}

}  // namespace
