// The file logger where files vanish, disks are full, folders are closed and processes die.

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <set>
#include <thread>

#include "Tests/Shared/Logging/LogFolder.h"
#include "Tests/Support/ChildProcess.h"

namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

size_t countOf(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
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
    const fs::path path = pathOf(" 2026-11-21 15-04.log");
    entry.change(path);
    log("second");
    const auto lines = linesOf(contentsOf(path));
    ASSERT_EQ(lines.size(), 1U) << entry.what;
    EXPECT_EQ(messageOf(lines.front()), "second") << entry.what;
    stopLogging();
    fs::remove_all(folder);
  }
}

// The main loop tells of it, so the room on the disk is free before another message comes.
TEST_F(FileLoggerFault, ADeletedFileIsClosedThoughNothingIsLogged) {
  startLogging();
  log("first");
  const fs::path path = pathOf(" 2026-11-21 15-04.log");
  const auto isOpen = [&] {
    for (const auto& descriptor : fs::directory_iterator("/proc/self/fd")) {
      std::error_code error;
      if (fs::read_symlink(descriptor.path(), error).string().starts_with(path.string())) {
        return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(isOpen());
  fs::remove(path);
  time.loop.runPending();
  logger->maximumFileSize();  // Comes behind the watch's work.
  EXPECT_FALSE(isOpen());
}

// What is in a file that was taken away, and in those that followed it, must be every line, and
// after its end a file takes no more than one write's lines.
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
  struct Taken {
    int descriptor;
    off_t size;
  };
  std::vector<Taken> taken;
  const fs::path path = pathOf(" 2026-11-21 15-04.log");
  const auto open = [&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); };
  for (int round = 0; round < 20; ++round) {
    int descriptor = -1;
    EXPECT_TRUE(waitUntil([&] { return (descriptor = open()) >= 0; })) << round;
    if (descriptor < 0) break;
    if (round % 2 == 0) {
      fs::remove(path);
    } else {
      fs::rename(path, folder / ("taken " + std::to_string(round)));
    }
    struct stat status {};
    fstat(descriptor, &status);
    taken.push_back({descriptor, status.st_size});
    DDLogLine("9 " + std::to_string(round));  // That there be a next line.
  }
  for (std::thread& thread : threads)
    thread.join();
  stopLogging();
  std::multiset<std::string> messages;
  const auto collect = [&](const std::string& text) {
    for (const std::string& line : linesOf(text))
      messages.insert(messageOf(line));
  };
  for (const Taken& file : taken) {
    struct stat status {};
    fstat(file.descriptor, &status);
    EXPECT_LE(status.st_size - file.size, OneWrite);
    collect(contentsOf("/proc/self/fd/" + std::to_string(file.descriptor)));
    close(file.descriptor);
  }
  for (const DDLogFileInfo_Time& info : manager->sortedLogFileInfos())
    collect(contentsOf(info.filePath()));
  EXPECT_EQ(messages.size(), Threads * LinesOfThread + taken.size());
  for (size_t thread = 0; thread < Threads; ++thread) {
    for (int line = 0; line < LinesOfThread; ++line)
      ASSERT_EQ(messages.count(std::to_string(thread) + " " + std::to_string(line)), 1U);
  }
}

TEST_F(FileLoggerFault, ACutLineOfAKilledRunIsEndedFirst) {
  const fs::path path = leave(" 2026-11-21 15-00.log", "whole\ncut li");
  startLogging();
  log("next");
  EXPECT_EQ(contentsOf(path), "whole\ncut li\n2026/11/21 15:04:05:000  next\n");
}

TEST_F(FileLoggerFault, AKilledRunLeavesWholeLinesAndTheNextOneGoesOn) {
  const auto logs = [&] {
    std::vector<fs::path> files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
      files.push_back(entry.path());
    return files;
  };
  {
    ChildProcess helper({LOG_TEST_HELPER, folder.string(), "0"});
    ASSERT_TRUE(
        waitUntil([&] { return logs().size() == 1 && fs::file_size(logs()[0]) > 100'000; }));
    helper.sendSignal(SIGKILL);
    ASSERT_EQ(helper.waitForExit(), 128 + SIGKILL);
  }
  const fs::path path = logs().front();
  const std::string left = contentsOf(path);
  const auto lines = linesOf(left);
  for (size_t line = 0; line + 1 < lines.size(); ++line)
    ASSERT_EQ(messageOf(lines[line]), "line " + std::to_string(line + 1) + " of the helper");
  ASSERT_EQ(runToEnd({LOG_TEST_HELPER, folder.string(), "1"}).status, 0);
  ASSERT_EQ(logs().back(), path);
  const std::string more = contentsOf(path);
  ASSERT_TRUE(more.starts_with(left));
  EXPECT_EQ(messageOf(linesOf(more).back()), "line 1 of the helper");
}

TEST_F(FileLoggerFault, TheOrdinaryEndOfAProcessWritesWhatWaits) {
  const auto helper = runToEnd({LOG_TEST_HELPER, folder.string(), "900"});
  EXPECT_EQ(helper.status, 0);
  EXPECT_EQ(helper.errors, "");
  const auto files = fs::directory_iterator(folder);
  const auto lines = linesOf(contentsOf(files->path()));
  ASSERT_EQ(lines.size(), 900U);
  EXPECT_EQ(messageOf(lines.back()), "line 900 of the helper");
}

/// Keeps this process's files from growing, as a full disk does.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limited{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

TEST_F(FileLoggerFault, AFullDiskCostsLinesAndNothingElse) {
  const std::string before(1899, 'x');
  const fs::path path = leave(" 2026-11-21 15-04.log", before + "\n");
  startLogging();
  log("whole");
  testing::internal::CaptureStderr();
  {
    const FileSizeLimit limit(2000);
    for (int line = 0; line < 30; ++line)
      log("lost " + std::to_string(line));
    for (int line = 0; line < 20'000; ++line)
      DDLogLine("lost in a flood");
    DDLog_Time::flushLog();
  }
  log("room again");
  const std::string errors = testing::internal::GetCapturedStderr();
  EXPECT_EQ(countOf(errors, "DDFileLogger.logMessage: "), 11U) << errors;
  EXPECT_EQ(countOf(errors, "File too large"), 10U) << errors;
  EXPECT_TRUE(errors.ends_with(
      "DDFileLogger.logMessage: Too many exceptions -- will not log any more of them.\n"));
  // 1900 bytes, 31, twice 32, and 5 of the line that no longer fits.
  EXPECT_EQ(contentsOf(path), before +
                                  "\n2026/11/21 15:04:05:000  whole\n"
                                  "2026/11/21 15:04:05:000  lost 0\n"
                                  "2026/11/21 15:04:05:000  lost 1\n"
                                  "2026/\n"
                                  "2026/11/21 15:04:05:000  room again\n");
}

TEST_F(FileLoggerFault, AFolderThatTakesNoFileHoldsNobodyUp) {
  std::ofstream(testFolder() / "a file") << "x";
  const struct {
    fs::path folder;
    const char* words;
  } cases[] = {
      {testFolder() / "a file" / "Logs", "DDLogFileManagerDefault: Error creating logsDirectory: "},
      {"/proc/self/fdinfo", "DDLogFileManagerDefault: Error creating a log file: "},
  };
  for (const auto& entry : cases) {
    testing::internal::CaptureStderr();
    manager = std::make_shared<DDLogFileManagerDefault_Time>(entry.folder.string());
    startLogging();
    for (int line = 0; line < 5000; ++line)
      DDLogLine("lost");
    stopLogging();
    const std::string errors = testing::internal::GetCapturedStderr();
    EXPECT_EQ(countOf(errors, entry.words), 1U) << errors;
    EXPECT_EQ(countOf(errors, "\n"), 1U) << errors;
  }
}

}  // namespace
