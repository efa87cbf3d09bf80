// The front door: what reaches which logger, in what order, and who waits.

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "Shared/External/Logging/DDLog.h"
#include "Shared/External/Logging/DDLogLine.h"
#include "Tests/Shared/Logging/TestLogger.h"
#include "Tests/Support/ChildProcess.h"

namespace {

class Log : public testing::Test {
 protected:
  ~Log() override {
    DDLog_Time::removeAllLoggers();
    DDLog_Time::flushLog();
  }

  static std::shared_ptr<TestLogger> add(TestLogger::Handler handler, int32_t mask = 31) {
    auto logger = std::make_shared<TestLogger>(std::move(handler));
    DDLog_Time::addLogger(logger, mask);
    return logger;
  }

  static TestLogger::Handler noteIn(std::vector<std::string>& notes) {
    return [&notes](const DDLogMessage_Time& message) { notes.push_back(message.logMsg); };
  }
};

TEST_F(Log, AMessageReachesTheLoggersThatShareABitWithItsFlag) {
  for (const auto& [flag, mask, reaches] :
       {std::tuple{4, 31, 1}, {4, 0, 0}, {4, 4, 1}, {4, 11, 0}, {16, 31, 1}, {0, 31, 0}}) {
    int count = 0;
    const auto logger = add([&](const DDLogMessage_Time&) { ++count; }, mask);
    DDLog_Time::log(true, 13, flag, 0, nullptr, nullptr, 0, nullptr, "text");
    DDLog_Time::flushLog();
    EXPECT_EQ(count, reaches) << flag << " & " << mask;
    DDLog_Time::removeLogger(logger);
  }
}

TEST_F(Log, FormatsOnTheCallersThread) {
  std::vector<std::string> notes;
  add(noteIn(notes));
  std::string argument = "before";
  DDLog_Time::log(true, 13, 4, 0, nullptr, nullptr, 0, nullptr, "%s %05.1f", argument.c_str(), 2.5);
  argument = "after!";
  const std::string longText(3000, 'x');
  DDLog_Time::log(true, 13, 4, 0, nullptr, nullptr, 0, nullptr, "%s", longText.c_str());
  const char* const none =
      std::getenv("A_VARIABLE_THAT_IS_NOT_SET");  // Null, unknown to the compiler.
  DDLog_Time::log(true, 13, 4, 0, nullptr, nullptr, 0, nullptr, none, 0);
  DDLogLine("100 %d as it stands");
  DDLog_Time::flushLog();
  EXPECT_EQ(notes, std::vector<std::string>({"before 002.5", longText, "100 %d as it stands"}));
}

TEST_F(Log, AMessageKnowsItsThreadAndKeepsWhatItIsToldToCopy) {
  std::string file = "file.cpp";
  std::string function = "work";
  const auto make = [&](int32_t options) {
    return DDLogMessage_Time("text", 13, 4, 7, file.c_str(), function.c_str(), 99, nullptr,
                             options);
  };
  const DDLogMessage_Time copiesFile = make(1);
  const DDLogMessage_Time copiesFunction = make(2);
  dispatch_sync(dispatch_queue_create("a queue of the test's"),
                [&] { EXPECT_EQ(make(0).queueLabel, "a queue of the test's"); });
  file.front() = 'F';
  function.front() = 'W';
  EXPECT_EQ(std::string(copiesFile.file) + copiesFile.function, "file.cppWork");
  EXPECT_EQ(std::string(copiesFunction.file) + copiesFunction.function, "File.cppwork");
  EXPECT_EQ(copiesFile.machThreadID, static_cast<uint32_t>(getpid())) << "the main thread's";
  EXPECT_EQ(std::stoul(copiesFile.threadID(), nullptr, 16), copiesFile.machThreadID);
  EXPECT_EQ(copiesFile.threadName, std::string("logging_tests").substr(0, 15));
}

TEST_F(Log, ALineOfTheProgramIsAnInformationOfItsPlace) {
  std::ostringstream note;
  add([&](const DDLogMessage_Time& message) {
    const std::string_view file = message.file;
    note << file.substr(file.rfind('/')) << ":" << message.lineNumber << " " << message.function
         << " " << message.logLevel << " " << message.logFlag << " " << message.logContext;
  });
  DDLogLine("text");
  const std::string line = std::to_string(__LINE__ - 1);
  DDLog_Time::flushLog();
  EXPECT_EQ(note.str(), "/LogTest.cpp:" + line + " TestBody 13 4 0");
}

TEST_F(Log, ASynchronousCallReturnsBehindTheLoggers) {
  int count = 0;
  add([&](const DDLogMessage_Time&) { ++count; });
  for (int call = 1; call <= 100; ++call) {
    DDLog_Time::log(false, 13, 4, 0, nullptr, nullptr, 0, nullptr, "text");
    EXPECT_EQ(count, call);
  }
}

TEST_F(Log, LoggersWorkAtOnceButNoneIsAMessageAhead) {
  std::array<std::atomic<int>, 3> counts{};
  for (auto& own : counts) {
    add([&](const DDLogMessage_Time&) {
      const int before = own++;
      for (const auto& other : counts)
        EXPECT_LE(std::abs(before - other), 1);
    });
  }
  for (int line = 0; line < 2000; ++line)
    DDLogLine("text");
  DDLog_Time::flushLog();
  for (const auto& count : counts)
    EXPECT_EQ(count, 2000);
}

TEST_F(Log, HoldsTheCallerWhenAThousandWait) {
  const auto release = dispatch_semaphore_create(0);
  add([&](const DDLogMessage_Time&) { dispatch_semaphore_wait(release); });
  std::atomic<int> returned = 0;
  std::thread caller([&] {
    for (int line = 0; line < 1500; ++line) {
      DDLogLine("text");
      ++returned;
    }
  });
  for (int done = 0; done < 10 && !HasFailure(); ++done) {
    EXPECT_TRUE(waitUntil([&] { return returned == 1000 + done; }));
    dispatch_semaphore_signal(release);
  }
  for (int line = 0; line < 1500; ++line)
    dispatch_semaphore_signal(release);
  caller.join();
  DDLog_Time::flushLog();
}

// Were a place not given back, the 1001st call would hang.
TEST_F(Log, GoesOnWithALoggerThatThrows) {
  std::vector<std::string> notes;
  add([](const DDLogMessage_Time&) { throw std::runtime_error("a faulty logger"); });
  add(noteIn(notes));
  add([](const DDLogMessage_Time&) { throw std::runtime_error("a faulty logger"); });
  testing::internal::CaptureStderr();
  for (int line = 0; line < 1500; ++line)
    DDLogLine("text");
  DDLog_Time::flushLog();
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(notes.size(), 1500U);
}

TEST_F(Log, ARemovedLoggerGetsNothingMore) {
  std::vector<std::string> notes;
  const auto logger = add(noteIn(notes));
  DDLogLine("before");
  DDLog_Time::removeLogger(logger);
  DDLogLine("after");
  DDLog_Time::flushLog();
  EXPECT_EQ(notes, std::vector<std::string>{"before"});
  EXPECT_TRUE(logger->removed);
}

}  // namespace
