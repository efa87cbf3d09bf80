#include "Platform/EventKit/CalendarFiles_p.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "Platform/Foundation/Files/FileDescriptor.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

constexpr int64_t LargestFile = 128 << 20;

FileState stateOf(const struct stat& status) {
  const auto nanoseconds = [](const timespec& time) {
    return int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
  };
  return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_ctim),
          nanoseconds(status.st_mtim)};
}

std::nullopt_t refuse(const std::filesystem::path& path, const std::string& reason) {
  NSLog("calendar: " + validUtf8(path.string()) + " is left out: " + reason);
  return std::nullopt;
}

}  // namespace

bool isCalendarFileName(std::string_view name) {
  constexpr std::string_view Ending = ".ics";
  if (name.size() <= Ending.size() || name.starts_with('.')) return false;
  return lowercaseString(name.substr(name.size() - Ending.size())) == Ending;
}

std::optional<FileState> regularFileState(const std::filesystem::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return stateOf(status);
}

std::optional<ReadFile> readCalendarFile(const std::filesystem::path& path, ReadingTables& tables) {
  // What was a file a moment ago may be a pipe by now: opening it must not wait for its other end.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0) return refuse(path, std::strerror(errno));
  if (!S_ISREG(status.st_mode)) return refuse(path, "it is no regular file");
  if (status.st_size > LargestFile) return refuse(path, "it is larger than 128 MiB");
  ICalendarFile reader(validUtf8(path.string()), tables);
  std::array<char, 65536> block{};
  for (int64_t left = status.st_size; left > 0;) {
    const auto wanted = std::min(static_cast<size_t>(left), block.size());
    const ssize_t count = read(file.get(), block.data(), wanted);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return refuse(path, std::strerror(errno));
    if (count == 0) break;
    reader.feed({block.data(), static_cast<size_t>(count)});
    left -= count;
  }
  return ReadFile{stateOf(status), reader.finish()};
}
