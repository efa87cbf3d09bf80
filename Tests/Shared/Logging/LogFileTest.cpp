// The folder of log files: their names, their order, their marks, and which of them stay.

#include <sys/xattr.h>

#include <memory>

#include "Shared/External/Logging/DDLogFileName.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Shared/Logging/LogFolder.h"

namespace fs = std::filesystem;

namespace {

class LogFile : public LogFolderTest {
 protected:
  LogFile() { manager = makeManager(); }

  void create(int count) {
    for (int file = 0; file < count; ++file) {
      auto info = manager->createNewLogFile();
      ASSERT_TRUE(info.has_value());
      info->setIsArchived(true);
    }
  }
};

TEST_F(LogFile, IsToldByItsName) {
  for (const auto& [rest, isLog] : casesIn<std::string, bool>("Shared/Logging/Cases/log-names.txt"))
    EXPECT_EQ(manager->isLogFile(manager->applicationName() + rest), isLog) << rest;
  EXPECT_FALSE(manager->isLogFile("another 2026-11-21 15-04.log"));
  EXPECT_FALSE(manager->isLogFile(First));
}

// A name that a deleted file leaves free would put the new file behind the older ones.
TEST_F(LogFile, StaysTheNewestWhenOlderOnesOfItsMinuteAreDeleted) {
  manager->setMaximumNumberOfLogFiles(2);
  create(4);
  // Two, and the one that was being made.
  EXPECT_EQ(names(), Names({" 2026-11-21 15-04 2.log", " 2026-11-21 15-04 3.log",
                            " 2026-11-21 15-04 4.log"}));
  create(7);
  EXPECT_EQ(manager->sortedLogFileInfos().front().filePath(), pathOf(" 2026-11-21 15-04 11.log"));
}

TEST_F(LogFile, TheOldestBeyondTheNumberAreDeleted) {
  for (int day = 1; day <= 9; ++day)
    leave(" 2026-11-0" + std::to_string(day) + " 10-00.log", "x", day < 9);
  writeFile(folder / "not a log.txt", "x");
  const auto countWithMaximum = [&](uint64_t maximum) {
    manager->setMaximumNumberOfLogFiles(maximum);
    DDLog_Time::flushLog();
    return manager->sortedLogFileInfos().size();
  };
  EXPECT_EQ(countWithMaximum(7), 8U) << "the one that is written to does not count";
  EXPECT_EQ(names().front(), " 2026-11-02 10-00.log");
  EXPECT_EQ(names().back(), " a log.txt");
  EXPECT_EQ(countWithMaximum(0), 8U) << "0 keeps all";
  manager->sortedLogFileInfos().front().setIsArchived(true);
  EXPECT_EQ(countWithMaximum(6), 6U);
}

TEST_F(LogFile, TheNewOneIsKeptThoughTheClockWasSetBack) {
  for (int day = 1; day <= 3; ++day)
    leave(" 2027-01-0" + std::to_string(day) + " 10-00.log", "x", true);
  manager->setMaximumNumberOfLogFiles(2);
  DDLog_Time::flushLog();
  create(1);
  EXPECT_EQ(names(), Names({First, " 2027-01-02 10-00.log", " 2027-01-03 10-00.log"}));
}

TEST_F(LogFile, KnowsItsAgeBySizeAndName) {
  DDLogFileInfo_Time info(leave(" 2026-11-20 15-04.log", "twelve bytes"));
  EXPECT_EQ(info.fileSize(), 12U);
  EXPECT_EQ(info.creationDate().timeIntervalSince1970(), utc(2026, 11, 20, 15, 4));
  EXPECT_EQ(info.age(), 86'405);
  writeFile(info.filePath(), "thirteen byte");
  EXPECT_EQ(info.fileSize(), 12U) << "kept";
  info.reset();
  EXPECT_EQ(info.fileSize(), 13U);
}

TEST_F(LogFile, KeepsItsMarkThroughARename) {
  DDLogFileInfo_Time info(leave(" 2026-11-20 15-04.log", "x"));
  EXPECT_FALSE(info.isArchived());
  info.setIsArchived(true);
  EXPECT_TRUE(DDLogFileInfo_Time(info.filePath()).isArchived());
  const std::string newName = manager->applicationName() + " 2026-11-20 15-05.log";
  info.renameFile(newName);
  EXPECT_EQ(info.fileName(), newName);
  EXPECT_TRUE(info.isArchived());
  info.setIsArchived(false);
  EXPECT_FALSE(DDLogFileInfo_Time(folder / newName).isArchived());
  // Deleted from outside, it has no mark to tell of.
  fs::remove(folder / newName);
  testing::internal::CaptureStderr();
  info.setIsArchived(false);
  info.setIsArchived(true);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// Fills what the file system gives a file for attributes, as one without them has none to give.
TEST_F(LogFile, IsMarkedBesideWhereItTakesNoAttribute) {
  const fs::path path = leave(" 2026-11-20 15-04.log", "x");
  DDLogFileInfo_Time info(path);
  bool full = false;
  for (size_t size = 4096; size > 0; size /= 2) {
    const std::string value(size, 'v');
    for (int copy = 0; copy < 16; ++copy) {
      const std::string name = "user.fill" + std::to_string(size) + "-" + std::to_string(copy);
      full = setxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0) != 0;
      if (full) break;
    }
  }
  if (!full) GTEST_SKIP() << "the file system's room for attributes has no end in sight";
  info.setIsArchived(true);
  EXPECT_LT(getxattr(path.c_str(), "user.lumberjack.log.archived", nullptr, 0), 0);
  EXPECT_TRUE(DDLogFileInfo_Time(path).isArchived());
  EXPECT_EQ(manager->sortedLogFileInfos().size(), 1U);
  info.renameFile(manager->applicationName() + " 2026-11-20 15-05.log");
  EXPECT_TRUE(info.isArchived());
  EXPECT_FALSE(DDLogFileInfo_Time(path).isArchived());
  info.removeFile();
  EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(LogFile, ANewOneDoesNotInheritTheMarkOfADeletedOne) {
  const fs::path path = leave(First, "x");
  writeFile(folder / ("." + path.filename().string() + ".archived"), "");
  EXPECT_TRUE(DDLogFileInfo_Time(path).isArchived());
  fs::remove(path);
  const auto info = manager->createNewLogFile();
  ASSERT_TRUE(info.has_value());
  EXPECT_EQ(info->filePath(), path);
  EXPECT_FALSE(info->isArchived());
}

}  // namespace
