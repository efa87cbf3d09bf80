// Timers at a date, on simulated time, and watches on real files.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "Platform/Dispatch/Dispatch.h"
#include "Platform/Foundation/RunLoop/VirtualRunLoop.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TestEnvironment.h"

namespace fs = std::filesystem;

namespace {

constexpr double Start = 1'700'000'000;
constexpr double Hour = 3600;
constexpr double Day = 24 * Hour;

class Source : public testing::Test {
 protected:
  Source() {
    NSRunLoop::setMainRunLoop(&loop);
    SystemClock::install(&clock);
  }
  ~Source() override {
    NSRunLoop::setMainRunLoop(nullptr);
    SystemClock::install(nullptr);
  }

  /// Lets simulated time pass, then serves the queue.
  void pass(double seconds) {
    loop.advance(seconds);
    dispatch_sync(queue, [] {});
  }

  DispatchTimer timerAfter(double seconds) {
    return {NSDate::dateWithTimeIntervalSince1970(Start + seconds), queue, [this] { ++calls; }};
  }

  ManualClock clock{Start};
  VirtualRunLoop loop{clock};
  dispatch_queue_t queue = dispatch_queue_create("source");
  std::atomic<int> calls = 0;
};

using Timer = Source;

TEST_F(Timer, FiresOnceAtItsDate) {
  const DispatchTimer timer = timerAfter(30 * Day);
  pass(30 * Day - 0.001);
  EXPECT_EQ(calls, 0);
  pass(0.001);
  EXPECT_EQ(calls, 1);
  pass(60 * Day);
  EXPECT_EQ(calls, 1);
}

TEST_F(Timer, ADateInThePastFiresAtOnce) {
  const DispatchTimer timer = timerAfter(-Day);
  pass(0);
  EXPECT_EQ(calls, 1);
}

// As after a suspend, in which the run loop's own clock stands still.
TEST_F(Timer, FollowsAClockSetForwardWithinAnHour) {
  const DispatchTimer timer = timerAfter(30 * Day);
  pass(Day);
  clock.setTimeIntervalSince1970(Start + 30 * Day);
  pass(Hour);
  EXPECT_EQ(calls, 1);
}

TEST_F(Timer, IsNotEarlyAfterAClockSetBack) {
  const DispatchTimer timer = timerAfter(2 * Day);
  pass(Day);
  clock.setTimeIntervalSince1970(Start);
  pass(2 * Day - 1);
  EXPECT_EQ(calls, 0);
  pass(1);
  EXPECT_EQ(calls, 1);
}

TEST_F(Timer, DoesNotFireOnceItsHandleHasGone) {
  {
    const DispatchTimer dropped = timerAfter(10);
    DispatchTimer replaced = timerAfter(10);
    replaced = {};
  }
  pass(20);
  EXPECT_EQ(calls, 0);
}

TEST_F(Timer, AHandlerThatWaitsOnTheQueueDoesNotStartOnceTheHandleHasGone) {
  const auto release = dispatch_semaphore_create(0);
  dispatch_async(queue, [release] { dispatch_semaphore_wait(release); });
  {
    const DispatchTimer timer = timerAfter(10);
    loop.advance(10);
  }
  dispatch_semaphore_signal(release);
  dispatch_sync(queue, [] {});
  EXPECT_EQ(calls, 0);
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

class FileWatch : public Source {
 protected:
  FileWatch() {
    fs::create_directory(folder);
    std::ofstream(file) << "text";
    descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  }
  ~FileWatch() override {
    close(descriptor);
    fs::remove_all(folder);
  }

  DispatchFileWatch watch(uint32_t events = DISPATCH_VNODE_DELETE | DISPATCH_VNODE_RENAME) {
    return {descriptor, events, queue, [this] { ++calls; }};
  }

  const fs::path folder = testFolder() / "watched";
  const fs::path file = folder / "file";
  int descriptor = -1;
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
  constexpr uint32_t Both = DISPATCH_VNODE_DELETE | DISPATCH_VNODE_RENAME;
  for (const Case& entry : {Case{"deleted", Both, remove, 1}, Case{"renamed", Both, rename, 1},
                            Case{"replaced", Both, replace, 1}, Case{"written", Both, write, 0},
                            Case{"has another name left", Both, link, 0},
                            Case{"deleted, not asked", DISPATCH_VNODE_RENAME, remove, 0},
                            Case{"renamed, not asked", DISPATCH_VNODE_DELETE, rename, 0}}) {
    const fs::path path = folder / entry.name;
    std::ofstream(path) << "text";
    const int opened = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    calls = 0;
    const DispatchFileWatch watch(opened, entry.events, queue, [this] { ++calls; });
    close(opened);
    entry.change(path);
    pass(1);
    pass(1);
    EXPECT_EQ(calls, entry.calls) << entry.name;
  }
}

TEST_F(FileWatch, WatchesTheOpenFileNotItsPath) {
  fs::rename(file, folder / "elsewhere");
  std::ofstream(file) << "another file";
  const DispatchFileWatch watched = watch();
  fs::remove(file);
  pass(1);
  EXPECT_EQ(calls, 0);
  fs::remove(folder / "elsewhere");
  pass(1);
  EXPECT_EQ(calls, 1);
}

TEST_F(FileWatch, TellsNothingOnceItsHandleHasGone) {
  const auto release = dispatch_semaphore_create(0);
  dispatch_async(queue, [release] { dispatch_semaphore_wait(release); });
  {
    const DispatchFileWatch watched = watch();
    fs::remove(file);
    loop.advance(1);  // The handler waits on the queue now.
  }
  dispatch_semaphore_signal(release);
  pass(1);
  EXPECT_EQ(calls, 0);
}

TEST_F(FileWatch, ItsHandlerMayDropIt) {
  DispatchFileWatch watched(descriptor, DISPATCH_VNODE_DELETE, queue, [&] {
    watched = {};
    ++calls;
  });
  fs::remove(file);
  pass(1);
  EXPECT_EQ(calls, 1);
}

TEST(FileWatchOnTheDesktop, HearsOfADeletion) {
  const fs::path path = testFolder() / "on-the-desktop";
  std::ofstream(path) << "text";
  const int opened = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  std::atomic<bool> told = false;
  const auto queue = dispatch_queue_create("desktop");
  const DispatchFileWatch watch(opened, DISPATCH_VNODE_DELETE, queue, [&] { told = true; });
  fs::remove(path);
  EXPECT_TRUE(waitUntil([&] {
    NSRunLoop::mainRunLoop().runPending();
    return told.load();
  }));
  close(opened);
}

}  // namespace
