// The watch of the system's clock: what it asks of the kernel, and what it makes of an answer.

#include <gtest/gtest.h>
#include <sys/timerfd.h>

#include <filesystem>
#include <string>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Tests/Platform/Support/Files.h"
#include "Tests/Support/ChildProcess.h"

namespace fs = std::filesystem;

namespace {

/// This process's one timer on the wall clock; -1 without one. Proc(5): "clockid" 0 is
/// CLOCK_REALTIME.
int wallClockTimer() {
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code error;
    if (fs::read_symlink(entry, error) != "anon_inode:[timerfd]") continue;
    const fs::path name = entry.path().filename();
    if (readFile("/proc/self/fdinfo" / name).find("clockid: 0\n") != std::string::npos)
      return std::stoi(name);
  }
  return -1;
}

// Without the flag the kernel never tells that the clock was set, which no test may do.
TEST(SystemClockWatch, AsksToBeCancelledAndAsksAgain) {
  int calls = 0;
  const auto observation = NSDistributedNotificationCenter::defaultCenter().addObserver(
      "NSSystemClockDidChangeNotification", [&](const NSNotification&) { ++calls; });
  const int timer = wallClockTimer();
  ASSERT_GE(timer, 0);
  const auto isArmed = [timer] {
    const std::string state = readFile("/proc/self/fdinfo/" + std::to_string(timer));
    return state.find("settime flags: 03\n") != std::string::npos;
  };
  EXPECT_TRUE(isArmed());
  // Makes the descriptor readable, as a clock that is set does.
  itimerspec now{};
  now.it_value.tv_nsec = 1;
  timerfd_settime(timer, 0, &now, nullptr);
  EXPECT_FALSE(isArmed());
  EXPECT_TRUE(waitUntil([&] {
    NSRunLoop::mainRunLoop().runPending();
    return calls > 0;
  }));
  EXPECT_TRUE(isArmed());
  EXPECT_EQ(calls, 1);
}

}  // namespace
