// The lines of the file logger, and when it goes on to a new file.

#include <array>

#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Shared/External/Logging/DDLogFileFormatterDefault.h"
#include "Shared/External/Logging/DDLogMessage.h"
#include "Tests/Shared/Logging/LogFolder.h"

namespace fs = std::filesystem;

namespace {

constexpr double Day = 86'400;

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
  EXPECT_EQ(readFile(pathOf(First)),
            "2026/11/21 15:04:05:007  first\n"
            "2026/11/21 15:04:05:999  ends in a line end\n"
            "2026/11/21 15:04:06:000  gr\xC3\xBC\xC3\x9F Gott, \xEF\xBF\xBD\n");
}

// Kathmandu is 5:45 ahead; Berlin goes from +1 to +2 at 01:00 UTC on 2026-03-29.
TEST_F(FileLogger, TheDateIsThatOfTheSystemsZone) {
  const struct {
    const char* zone;
    double instant;
    const char* text;
  } cases[] = {
      {"Asia/Kathmandu", utc(2026, 11, 21, 20, 0, 0.5), "2026/11/22 01:45:00:500"},
      {"Europe/Berlin", utc(2026, 11, 21, 20, 0, 1), "2026/11/21 21:00:01:000"},
      {"Europe/Berlin", utc(2026, 3, 29, 0, 59, 59.999), "2026/03/29 01:59:59:999"},
      {"Europe/Berlin", utc(2026, 3, 29, 1), "2026/03/29 03:00:00:000"},
      {"Europe/Berlin", utc(2026, 3, 29, 0, 59, 59.25), "2026/03/29 01:59:59:250"},
  };
  DDLogDateFormatter formatter;
  for (const auto& [zone, instant, text] : cases) {
    NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName(zone));
    EXPECT_EQ(formatter.stringFromDate(NSDate::dateWithTimeIntervalSince1970(instant)), text);
  }
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
  logger->setLogFormatter(std::make_shared<Shouting>());
  log("loud");
  log("secret");
  logger->setLogFormatter(nullptr);
  log("plain");
  log("");
  EXPECT_EQ(readFile(pathOf(First)), "loud!\nplain\n");
}

// With the date a line of this message is 100 bytes long.
TEST_F(FileLogger, AFileThatReachesItsSizeIsDoneWith) {
  const std::string message(74, 'x');
  startLogging();
  logger->setMaximumFileSize(300);
  log(message);
  log(message);
  EXPECT_FALSE(isArchived(First));
  log(message);
  EXPECT_TRUE(isArchived(First));
  EXPECT_EQ(names().size(), 1U) << "nothing new opens before the next message";
  for (int line = 0; line < 5; ++line)
    DDLogLine(message);
  DDLog_Time::flushLog();
  EXPECT_EQ(messagesIn(pathOf(First)), Names(3, message));
  EXPECT_EQ(messagesIn(pathOf(" 2026-11-21 15-04 2.log")), Names(3, message));
  EXPECT_EQ(messagesIn(pathOf(" 2026-11-21 15-04 3.log")), Names(2, message));
  EXPECT_FALSE(isArchived(" 2026-11-21 15-04 3.log"));
  logger->setMaximumFileSize(10);
  DDLog_Time::flushLog();
  EXPECT_TRUE(isArchived(" 2026-11-21 15-04 3.log")) << "a new size holds at once";
}

TEST_F(FileLogger, AFileIsDoneWithAtItsAgeUnlessThatIsZero) {
  startLogging();
  const auto setAge = [&](double age) {
    logger->setRollingFrequency(age);
    EXPECT_EQ(logger->rollingFrequency(), age);  // Comes behind the setting's work.
  };
  setAge(0);
  log("first");
  setAge(30 * Day);
  time.loop.advance(30 * Day - 0.001);
  DDLog_Time::flushLog();
  EXPECT_FALSE(isArchived(First));
  time.loop.advance(0.001);
  logger->rollingFrequency();  // Comes behind the timer's work.
  EXPECT_TRUE(isArchived(First));
  log("second");
  EXPECT_EQ(names(), Names({First, " 2026-12-21 15-04.log"}));
  setAge(0);
  time.loop.advance(1000 * Day);
  log("third");
  EXPECT_EQ(messagesIn(pathOf(" 2026-12-21 15-04.log")), Names({"second", "third"}));
  setAge(Day);
  EXPECT_TRUE(isArchived(" 2026-12-21 15-04.log")) << "a new age holds at once";
}

TEST_F(FileLogger, GoesOnWithTheFileOfTheLastRunIfItIsFit) {
  const struct {
    const char* what;
    const char* name;
    size_t size;
    bool archived;
    bool goesOn;
    double age = Day;
  } cases[] = {
      {"fit", " 2026-11-21 14-00.log", 60, false, true},
      {"too large", " 2026-11-21 14-00.log", 100, false, false},
      {"archived", " 2026-11-21 14-00.log", 10, true, false},
      {"nearly too old", " 2026-11-20 15-05.log", 10, false, true},
      {"too old", " 2026-11-20 15-04.log", 10, false, false},
      {"of no age", " 2026-01-01 00-00.log", 10, false, true, 0},
      {"from the future", " 2026-12-01 00-00.log", 10, false, true},
  };
  for (const auto& entry : cases) {
    const fs::path path =
        leave(entry.name, std::string(entry.size - 1, 'x') + "\n", entry.archived);
    startLogging();
    logger->setMaximumFileSize(100);
    logger->setRollingFrequency(entry.age);
    log("goes on");
    EXPECT_EQ(names().size(), entry.goesOn ? 1U : 2U) << entry.what;
    EXPECT_EQ(messagesIn(path).size(), entry.goesOn ? 2U : 1U) << entry.what;
    EXPECT_EQ(DDLogFileInfo_Time(path).isArchived(), !entry.goesOn) << entry.what;
    stopLogging();
    fs::remove_all(folder);
  }
}

TEST_F(FileLogger, ItsEndLeavesTheFileForTheNextRunAndItsRemovalDoesNot) {
  startLogging();
  log("first");
  {
    // One that the front door does not know, as in another process.
    const auto other = std::make_shared<DDFileLogger_Time>(manager);
    dispatch_sync(other->loggerQueue(), [&] {
      other->logMessage(DDLogMessage_Time("second", 13, 4, 0, nullptr, nullptr, 0, nullptr, 0));
    });
    DDLog_Time::flushLog();
  }
  EXPECT_EQ(messagesIn(pathOf(First)), Names({"first", "second"}));
  EXPECT_FALSE(isArchived(First));
  stopLogging();
  EXPECT_TRUE(isArchived(First));
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
  EXPECT_EQ(names(), Names({" 2026-11-21 15-04 2.log", First}));
}

TEST_F(FileLogger, TwoOfAFolderShareItsFileWithoutHurtingALine) {
  manager = makeManager();
  const std::array loggers = {std::make_shared<DDFileLogger_Time>(manager),
                              std::make_shared<DDFileLogger_Time>(manager)};
  leave(First, "");
  for (const auto& each : loggers)
    DDLog_Time::addLogger(each);
  for (int line = 0; line < 10'000; ++line)
    DDLogLine(std::to_string(line));
  DDLog_Time::flushLog();
  std::vector<int> counts(10'000);
  for (const std::string& message : messagesIn(pathOf(First)))
    ++counts.at(std::stoul(message));
  EXPECT_EQ(counts, std::vector<int>(10'000, 2));
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
}

}  // namespace
