// The file logger where files vanish, disks are full, folders are closed and processes die.

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <limits>
#include <thread>

#include "Tests/Shared/Logging/LogFolder.h"
#include "Tests/Support/ChildProcess.h"

namespace fs = std::filesystem;

namespace {

ptrdiff_t countOf(const std::string& text, const std::string& part) {
  return static_cast<ptrdiff_t>(componentsSeparatedByString(text, part).size()) - 1;
}

class FileLoggerFault : public LogFolderTest {};

TEST_F(FileLoggerFault, ADeletedRenamedOrReplacedFileIsFollowedByANewOne) {
  const struct {
    const char* what;
    void (*change)(const fs::path& file);
  } cases[] = {
      {"deleted", [](const fs::path& file) { fs::remove(file); }},
      {"renamed", [](const fs::path& file) { fs::rename(file, file.string() + ".old"); }},
      // Of which the watch on the file hears nothing, as where no watch could be had.
      {"moved with its folder",
       [](const fs::path& file) {
         fs::rename(file.parent_path(), file.parent_path().string() + ".old");
       }},
      {"deleted with its folder", [](const fs::path& file) { fs::remove_all(file.parent_path()); }},
  };
  for (const auto& entry : cases) {
    startLogging();
    log("first");
    const fs::path path = pathOf(First);
    entry.change(path);
    log("second");
    EXPECT_EQ(messagesIn(path), Names{"second"}) << entry.what;
    stopLogging();
    fs::remove_all(folder);
  }
}

// The main loop tells of it, so the room on the disk is free before another message comes.
TEST_F(FileLoggerFault, ADeletedFileIsClosedThoughNothingIsLogged) {
  startLogging();
  log("first");
  const fs::path path = pathOf(First);
  const auto isOpen = [&] {
    return std::ranges::any_of(fs::directory_iterator("/proc/self/fd"), [&](const auto& entry) {
      std::error_code error;
      return fs::read_symlink(entry.path(), error).string().starts_with(path.string());
    });
  };
  EXPECT_TRUE(isOpen());
  fs::remove(path);
  time.loop.runPending();
  logger->maximumFileSize();  // Comes behind the watch's work.
  EXPECT_FALSE(isOpen());
}

// What is in the files that were taken away, one after the other, and in those that followed must
// be every line of every thread in its order, and after its end a file takes no more than one
// write's lines.
TEST_F(FileLoggerFault, FilesTakenAwayUnderLoadLoseNothingBehindThem) {
  constexpr size_t Threads = 4;
  constexpr int LinesOfThread = 20'000;
  constexpr off_t OneWrite = 16'384 + 100;
  manager = makeManager();
  manager->setMaximumNumberOfLogFiles(0);
  startLogging();
  logger->setMaximumFileSize(0);
  std::vector<std::thread> threads;
  for (size_t thread = 0; thread < Threads; ++thread) {
    threads.emplace_back([thread] {
      for (int line = 0; line < LinesOfThread; ++line)
        DDLogLine(std::to_string(thread) + " " + std::to_string(line));
    });
  }
  const auto sizeOf = [](int descriptor) {
    struct stat status {};
    fstat(descriptor, &status);
    return status.st_size;
  };
  std::vector<std::pair<int, off_t>> taken;
  const fs::path path = pathOf(First);
  for (int round = 0; round < 20; ++round) {
    int descriptor = -1;
    const auto open = [&] { return descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC); };
    ASSERT_TRUE(waitUntil([&] { return open() >= 0; })) << round;
    if (round % 2 == 0) {
      fs::remove(path);
    } else {
      fs::rename(path, folder / ("taken " + std::to_string(round)));
    }
    taken.emplace_back(descriptor, sizeOf(descriptor));
    DDLogLine(std::to_string(Threads) + " " + std::to_string(round));  // That there be a next line.
  }
  for (std::thread& thread : threads)
    thread.join();
  stopLogging();
  std::array<int, Threads + 1> next{};
  const auto expectInOrder = [&](const fs::path& file) {
    for (const std::string& message : messagesIn(file)) {
      const size_t thread = std::stoul(message);
      ASSERT_EQ(message, std::to_string(thread) + " " + std::to_string(next.at(thread)++));
    }
  };
  for (const auto& [descriptor, size] : taken) {
    EXPECT_LE(sizeOf(descriptor) - size, OneWrite);
    expectInOrder("/proc/self/fd/" + std::to_string(descriptor));
    close(descriptor);
  }
  auto infos = manager->sortedLogFileInfos();
  std::ranges::reverse(infos);
  for (const DDLogFileInfo_Time& info : infos)
    expectInOrder(info.filePath());
  EXPECT_EQ(next, (std::array{LinesOfThread, LinesOfThread, LinesOfThread, LinesOfThread, 20}));
}

TEST_F(FileLoggerFault, ACutLineOfAKilledRunIsEndedFirst) {
  const fs::path path = leave(" 2026-11-21 15-00.log", "whole\ncut li");
  startLogging();
  log("next");
  EXPECT_EQ(readFile(path), "whole\ncut li\n2026/11/21 15:04:05:000  next\n");
}

// Each run is this test anew in a process of its own, which logs into the first one's folder.
TEST_F(FileLoggerFault, AKilledRunLeavesWholeLinesAndTheNextOneGoesOnToItsOrdinaryEnd) {
  setenv("LOG_TEST_FOLDER", folder.c_str(), 0);
  manager = std::make_shared<DDLogFileManagerDefault_Time>(std::getenv("LOG_TEST_FOLDER"));
  const fs::path path = pathOf(First);
  const auto logLines = [&](int count) {
    startLogging();
    logger->setMaximumFileSize(0);
    for (int line = 1; line <= count; ++line)
      DDLogLine("line " + std::to_string(line));
  };
  const auto logUntilKilled = [&] {
    std::thread killer([&] {
      waitUntil([&] { return fs::exists(path) && fs::file_size(path) > 100'000; });
      raise(SIGKILL);
    });
    logLines(std::numeric_limits<int>::max());
    killer.join();
  };
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(logUntilKilled(), testing::KilledBySignal(SIGKILL), "");
  auto lines = messagesIn(path);
  const size_t count = lines.size();
  EXPECT_GT(count, 1000U);
  for (size_t line = 0; line + 1 < count; ++line)
    ASSERT_EQ(lines[line], "line " + std::to_string(line + 1));
  const auto logAndEnd = [&] {
    logLines(900);
    std::exit(0);
  };
  EXPECT_EXIT(logAndEnd(), testing::ExitedWithCode(0), "^$");
  lines = messagesIn(path);
  ASSERT_EQ(lines.size(), count + 900);
  EXPECT_EQ(lines[count], "line 1");
  EXPECT_EQ(lines.back(), "line 900");
}

TEST_F(FileLoggerFault, AFullDiskCostsLinesAndNothingElse) {
  const std::string before(1899, 'x');
  const fs::path path = leave(First, before + "\n");
  startLogging();
  log("whole");
  // Keeps this process's files from growing, as a full disk does.
  signal(SIGXFSZ, SIG_IGN);
  const auto limitFileSize = [](rlim_t bytes) {
    const rlimit limit{bytes, RLIM_INFINITY};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  };
  testing::internal::CaptureStderr();
  limitFileSize(2000);
  for (int line = 0; line < 30; ++line)
    log("lost " + std::to_string(line));
  for (int line = 0; line < 20'000; ++line)
    DDLogLine("lost in a flood");
  DDLog_Time::flushLog();
  limitFileSize(RLIM_INFINITY);
  log("room again");
  const std::string errors = testing::internal::GetCapturedStderr();
  EXPECT_EQ(countOf(errors, "DDFileLogger.logMessage: "), 11) << errors;
  EXPECT_EQ(countOf(errors, "File too large"), 10) << errors;
  EXPECT_TRUE(errors.ends_with(
      "DDFileLogger.logMessage: Too many exceptions -- will not log any more of them.\n"));
  // 1900 bytes, 31, twice 32, and 5 of the line that no longer fits.
  EXPECT_EQ(readFile(path), before +
                                "\n2026/11/21 15:04:05:000  whole\n"
                                "2026/11/21 15:04:05:000  lost 0\n"
                                "2026/11/21 15:04:05:000  lost 1\n"
                                "2026/\n"
                                "2026/11/21 15:04:05:000  room again\n");
}

TEST_F(FileLoggerFault, AFolderThatTakesNoFileHoldsNobodyUp) {
  writeFile(folder, "x");
  for (const auto& [unfit, words] :
       {std::pair{folder / "Logs", "DDLogFileManagerDefault: Error creating logsDirectory: "},
        {"/proc/self/fdinfo", "DDLogFileManagerDefault: Error creating a log file: "}}) {
    testing::internal::CaptureStderr();
    manager = std::make_shared<DDLogFileManagerDefault_Time>(unfit.string());
    startLogging();
    for (int line = 0; line < 5000; ++line)
      DDLogLine("lost");
    stopLogging();
    const std::string errors = testing::internal::GetCapturedStderr();
    EXPECT_EQ(countOf(errors, words), 1) << errors;
    EXPECT_EQ(countOf(errors, "\n"), 1) << errors;
  }
}

}  // namespace
