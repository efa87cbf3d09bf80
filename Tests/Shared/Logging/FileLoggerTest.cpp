// The lines of the file logger, and when it goes on to a new file.

#include <array>
#include <thread>

#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Shared/External/Logging/DDLogFileFormatterDefault.h"
#include "Shared/External/Logging/DDLogMessage.h"
#include "Tests/Shared/Logging/LogFolder.h"
#include "Tests/Support/ChildProcess.h"

namespace fs = std::filesystem;

namespace {

constexpr double Day = 86'400;

using Names = std::vector<std::string>;

class FileLogger : public LogFolderTest {};

TEST_F(FileLogger, WritesTheDateTwoBlanksAndTheMessage) {
  startLogging();
  EXPECT_EQ(names(), Names()) << "no file before the first message";
  time.clock.setTimeIntervalSince1970(utc(2026, 11, 21, 15, 4, 5.007));
  log("first");
  time.clock.advanceMicroseconds(992'999);
  log("ends in a line end\n");
  time.clock.advanceMicroseconds(1);
  log("gr\xC3\xBC\xC3\x9F Gott, \xFF");
  EXPECT_EQ(contentsOf(pathOf(" 2026-11-21 15-04.log")),
            "2026/11/21 15:04:05:007  first\n"
            "2026/11/21 15:04:05:999  ends in a line end\n"
            "2026/11/21 15:04:06:000  gr\xC3\xBC\xC3\x9F Gott, \xEF\xBF\xBD\n");
}

// Kathmandu is 5:45 ahead; Berlin goes from +1 to +2 at 01:00 UTC on 2026-03-29.
TEST_F(FileLogger, TheDateIsThatOfTheSystemsZone) {
  DDLogDateFormatter formatter;
  const auto text = [&](double instant) {
    return formatter.stringFromDate(NSDate::dateWithTimeIntervalSince1970(instant));
  };
  NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Asia/Kathmandu"));
  EXPECT_EQ(text(utc(2026, 11, 21, 20, 0, 0.5)), "2026/11/22 01:45:00:500");
  NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName("Europe/Berlin"));
  EXPECT_EQ(text(utc(2026, 11, 21, 20, 0, 1)), "2026/11/21 21:00:01:000");
  EXPECT_EQ(text(utc(2026, 3, 29, 0, 59, 59.999)), "2026/03/29 01:59:59:999");
  EXPECT_EQ(text(utc(2026, 3, 29, 1)), "2026/03/29 03:00:00:000");
  EXPECT_EQ(text(utc(2026, 3, 29, 0, 59, 59.25)), "2026/03/29 01:59:59:250") << "backwards";
  NSTimeZone::setSystemTimeZone(std::nullopt);
}

TEST_F(FileLogger, AnotherFormatterOrNoneMakesTheText) {
  class Shouting : public DDLogFormatter {
   public:
    std::optional<std::string> formatLogMessage(const DDLogMessage_Time& message) override {
      if (message.logMsg == "secret") return std::nullopt;
      return message.logMsg + "!";
    }
  };
  startLogging();
  const auto formatter = std::make_shared<Shouting>();
  logger->setLogFormatter(formatter);
  EXPECT_EQ(logger->logFormatter(), formatter);
  log("loud");
  log("secret");
  logger->setLogFormatter(nullptr);
  log("plain");
  log("");
  EXPECT_EQ(contentsOf(pathOf(" 2026-11-21 15-04.log")), "loud!\nplain\n");
}

// With the date a line of this message is 100 bytes long.
TEST_F(FileLogger, AFileThatReachesItsSizeIsDoneWith) {
  const std::string message(74, 'x');
  startLogging();
  logger->setMaximumFileSize(5'242'880);
  for (int line = 0; line < 52'428; ++line)
    DDLogLine(message);
  DDLog_Time::flushLog();
  const fs::path first = pathOf(" 2026-11-21 15-04.log");
  EXPECT_EQ(fs::file_size(first), 5'242'800U);
  EXPECT_FALSE(DDLogFileInfo_Time(first).isArchived());
  log(message);
  EXPECT_EQ(fs::file_size(first), 5'242'900U);
  EXPECT_TRUE(DDLogFileInfo_Time(first).isArchived());
  EXPECT_EQ(names().size(), 1U) << "nothing new opens before the next message";
  log("next");
  EXPECT_EQ(linesOf(contentsOf(pathOf(" 2026-11-21 15-04 2.log"))).size(), 1U);
  logger->setMaximumFileSize(10);
  DDLog_Time::flushLog();
  EXPECT_TRUE(DDLogFileInfo_Time(pathOf(" 2026-11-21 15-04 2.log")).isArchived())
      << "a new size holds at once";
}

TEST_F(FileLogger, EveryLineOfEveryThreadIsInTheFilesOnceInOrder) {
  constexpr size_t Threads = 4;
  constexpr int LinesOfThread = 50'000;
  manager = makeManager();
  manager->setMaximumNumberOfLogFiles(0);
  startLogging();
  logger->setMaximumFileSize(1'048'576);
  std::vector<std::thread> threads;
  for (size_t thread = 0; thread < Threads; ++thread) {
    threads.emplace_back([thread] {
      for (int line = 0; line < LinesOfThread; ++line)
        DDLogLine(std::to_string(thread) + " " + std::to_string(line));
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  stopLogging();
  std::array<int, Threads> next{};
  auto infos = manager->sortedLogFileInfos();
  std::ranges::reverse(infos);
  for (DDLogFileInfo_Time& info : infos) {
    // Rolled by the line that reaches the size; the shortest line is 29 bytes long.
    if (&info != &infos.back()) {
      EXPECT_GE(info.fileSize(), 1'048'576U);
      EXPECT_LT(info.fileSize(), 1'048'576U + 40);
    }
    for (const std::string& line : linesOf(contentsOf(info.filePath()))) {
      const std::string message = messageOf(line);
      const auto thread = static_cast<size_t>(message.at(0) - '0');
      ASSERT_EQ(message, std::to_string(thread) + " " + std::to_string(next.at(thread)++));
    }
  }
  EXPECT_GT(infos.size(), 4U);
  for (const int count : next)
    EXPECT_EQ(count, LinesOfThread);
}

TEST_F(FileLogger, AFileIsDoneWithAtItsAge) {
  startLogging();
  logger->setRollingFrequency(30 * Day);
  log("first");
  const DDLogFileInfo_Time first(pathOf(" 2026-11-21 15-04.log"));
  time.loop.advance(30 * Day - 0.001);
  DDLog_Time::flushLog();
  EXPECT_FALSE(first.isArchived());
  time.loop.advance(0.001);
  EXPECT_EQ(logger->rollingFrequency(), 30 * Day);  // Comes behind the timer's work.
  EXPECT_TRUE(first.isArchived());
  log("second");
  EXPECT_EQ(names(), Names({" 2026-11-21 15-04.log", " 2026-12-21 15-04.log"}));
  time.loop.advance(Day);
  logger->setRollingFrequency(Day);
  EXPECT_EQ(logger->rollingFrequency(), Day);
  EXPECT_TRUE(DDLogFileInfo_Time(pathOf(" 2026-12-21 15-04.log")).isArchived())
      << "a new age holds at once";
}

TEST_F(FileLogger, AnAgeOfZeroIsNone) {
  startLogging();
  logger->setRollingFrequency(0);
  log("first");
  time.loop.advance(1000 * Day);
  log("second");
  EXPECT_EQ(names().size(), 1U);
}

TEST_F(FileLogger, GoesOnWithTheFileOfTheLastRunIfItIsFit) {
  const struct {
    const char* what;
    const char* name;
    size_t size;
    bool archived;
    bool goesOn;
  } cases[] = {
      {"fit", " 2026-11-21 14-00.log", 60, false, true},
      {"too large", " 2026-11-21 14-00.log", 100, false, false},
      {"archived", " 2026-11-21 14-00.log", 10, true, false},
      {"nearly too old", " 2026-11-20 15-05.log", 10, false, true},
      {"too old", " 2026-11-20 15-04.log", 10, false, false},
      {"from the future", " 2026-12-01 00-00.log", 10, false, true},
  };
  for (const auto& entry : cases) {
    const fs::path path =
        leave(entry.name, std::string(entry.size - 1, 'x') + "\n", entry.archived);
    startLogging();
    logger->setMaximumFileSize(100);
    logger->setRollingFrequency(Day);
    log("goes on");
    EXPECT_EQ(names().size(), entry.goesOn ? 1U : 2U) << entry.what;
    EXPECT_EQ(linesOf(contentsOf(path)).size(), entry.goesOn ? 2U : 1U) << entry.what;
    EXPECT_EQ(DDLogFileInfo_Time(path).isArchived(), !entry.goesOn) << entry.what;
    stopLogging();
    fs::remove_all(folder);
  }
}

TEST_F(FileLogger, ItsEndLeavesTheFileForTheNextRunAndItsRemovalDoesNot) {
  startLogging();
  log("first");
  const DDLogFileInfo_Time file(pathOf(" 2026-11-21 15-04.log"));
  {
    // One that the front door does not know, as in another process.
    const auto other = std::make_shared<DDFileLogger_Time>(manager);
    dispatch_sync(other->loggerQueue(), [&] {
      other->logMessage(DDLogMessage_Time("second", 13, 4, 0, nullptr, nullptr, 0, nullptr, 0));
    });
    DDLog_Time::flushLog();
  }
  EXPECT_EQ(linesOf(contentsOf(file.filePath())).size(), 2U);
  EXPECT_FALSE(file.isArchived());
  stopLogging();
  EXPECT_TRUE(file.isArchived());
}

TEST_F(FileLogger, RollsOnDemandAndTellsOnTheMainQueue) {
  startLogging();
  std::string notes;
  logger->rollLogFileWithCompletionBlock([&] { notes += "nothing open; "; });
  log("first");
  logger->rollLogFileWithCompletionBlock([&] { notes += dispatch_get_current_label(); });
  log("second");
  EXPECT_EQ(notes, "");
  time.loop.runPending();
  EXPECT_EQ(notes, "nothing open; main");
  EXPECT_EQ(names(), Names({" 2026-11-21 15-04 2.log", " 2026-11-21 15-04.log"}));
}

TEST_F(FileLogger, TwoOfAFolderShareItsFileWithoutHurtingALine) {
  manager = makeManager();
  const std::array loggers = {std::make_shared<DDFileLogger_Time>(manager),
                              std::make_shared<DDFileLogger_Time>(manager)};
  leave(" 2026-11-21 15-04.log", "");
  for (const auto& each : loggers)
    DDLog_Time::addLogger(each);
  for (int line = 0; line < 10'000; ++line)
    DDLogLine(std::to_string(line));
  DDLog_Time::flushLog();
  std::vector<int> counts(10'000);
  for (const std::string& line : linesOf(contentsOf(pathOf(" 2026-11-21 15-04.log"))))
    ++counts.at(std::stoul(messageOf(line)));
  EXPECT_EQ(names().size(), 1U);
  EXPECT_TRUE(std::ranges::all_of(counts, [](int count) { return count == 2; }));
}

class FileLoggerDeath : public FileLogger {
 protected:
  FileLoggerDeath() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(FileLoggerDeath, ItsAccessorsRefuseTheQueuesOnWhichTheyWouldLock) {
  startLogging();
  EXPECT_DEATH(dispatch_sync(DDLog_Time::loggingQueue(), [&] { logger->maximumFileSize(); }),
               "Core architecture requirement failure");
  EXPECT_DEATH(dispatch_sync(logger->loggerQueue(), [&] { logger->setRollingFrequency(1); }),
               "MUST access ivar directly, NOT via self.* syntax.");
  EXPECT_DEATH(dispatch_sync(logger->loggerQueue(), [&] { logger->logFormatter(); }),
               "MUST access ivar directly, NOT via self.* syntax.");
}

}  // namespace
