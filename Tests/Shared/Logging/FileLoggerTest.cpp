// The lines of the file logger, and when it goes on to a new file.

#include <array>

#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Shared/External/Logging/DDLogFileFormatterDefault.h"
#include "Shared/External/Logging/DDLogMessage.h"
#include "Tests/Platform/Support/CaseTable.h"
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

TEST_F(FileLogger, TheDateIsThatOfTheSystemsZone) {
  DDLogDateFormatter formatter;
  for (const auto& [zone, moment, text] :
       casesIn<std::string, NSDate, std::string>("Shared/Logging/Cases/log-dates.txt")) {
    NSTimeZone::setSystemTimeZone(NSTimeZone::timeZoneWithName(zone));
    EXPECT_EQ(formatter.stringFromDate(moment), text);
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
  for (const auto& [what, name, size, archived, age, goesOn] :
       casesIn<std::string, std::string, size_t, bool, double, bool>(
           "Shared/Logging/Cases/last-logs.txt")) {
    const fs::path path = leave(name, std::string(size - 1, 'x') + "\n", archived);
    startLogging();
    logger->setMaximumFileSize(100);
    logger->setRollingFrequency(age * Day);
    log("goes on");
    EXPECT_EQ(names().size(), goesOn ? 1U : 2U) << what;
    EXPECT_EQ(messagesIn(path).size(), goesOn ? 2U : 1U) << what;
    EXPECT_EQ(DDLogFileInfo_Time(path).isArchived(), !goesOn) << what;
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

TEST_F(FileLogger, ItsAccessorsRefuseTheQueuesOnWhichTheyWouldLock) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  startLogging();
  EXPECT_DEATH(dispatch_sync(DDLog_Time::loggingQueue(), [&] { logger->maximumFileSize(); }),
               "Core architecture requirement failure");
  EXPECT_DEATH(dispatch_sync(logger->loggerQueue(), [&] { logger->setRollingFrequency(1); }),
               "MUST access ivar directly, NOT via self.* syntax.");
}

}  // namespace
