#include "Platform/Foundation/Settings/PreferenceFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
#include <thread>

#include "Platform/Foundation/Files/FileContents_p.h"
#include "Platform/Foundation/Files/FileLock_p.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Platform/Foundation/Time/NSDate.h"

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

/// How long to wait goes by the monotonic clock: the present instant may be a simulated one, and a
/// number of pauses takes longer on a busy machine.
using Clock = std::chrono::steady_clock;

/// A writer has the lock for as long as the disk takes for a small file.
constexpr auto LockPatience = 2s;

/// A damaged file that has not changed for so long is not being written.
constexpr auto RestTime = 1s;
constexpr auto RestPause = 20ms;
constexpr auto RestPatience = 3s;

fs::path sibling(const fs::path& path, const std::string& suffix) {
  fs::path result = path;
  result += suffix;
  return result;
}

/// The file that a path leads to through its links; it need not be there.
fs::path linkedFile(const fs::path& path) {
  constexpr int MostLinks = 40;
  std::error_code error;
  fs::path file = path;
  for (int link = 0; link < MostLinks && fs::is_symlink(file, error); ++link) {
    file = file.parent_path() / fs::read_symlink(file, error);
  }
  return file;
}

/// A name beside a file that is not taken yet.
fs::path asideName(const fs::path& file) {
  const auto time = static_cast<int64_t>(NSDate::date().timeIntervalSince1970());
  std::error_code error;
  for (int attempt = 0;; ++attempt) {
    fs::path aside = sibling(file, ".corrupt-" + std::to_string(time + attempt));
    if (!fs::exists(aside, error)) return aside;
  }
}

std::string systemProblem(std::string_view what) {
  return std::string(what) + ": " + std::strerror(errno);
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

/// The dictionary that a file's bytes hold, or nothing if they are no such list.
std::optional<PropertyList::Dictionary> parsed(const std::string& bytes,
                                               std::vector<std::string>* droppedKeys = nullptr) {
  const auto list = propertyListWithData(bytes, droppedKeys);
  if (!list || list->dictionary() == nullptr) return std::nullopt;
  return *list->dictionary();
}

/// Writes a new file to the disk and reads it back. What went wrong, or an empty text.
std::string writeProblem(const fs::path& file, const PropertyList::Dictionary& contents) {
  unlink(file.c_str());  // What a killed writer left.
  {
    const FileDescriptor output(
        open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!output || !writeAll(output.get(), dataWithPropertyList(contents)) ||
        fsync(output.get()) != 0) {
      return systemProblem("cannot be written");
    }
  }
  const auto written = contentsOfRegularFile(file);
  const bool isSame = written.bytes && parsed(*written.bytes) == contents;
  return isSame ? "" : "cannot be written: it would not read back as it is";
}

}  // namespace

PreferenceFile::Signature PreferenceFile::signature() const {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_size,
          status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec};
}

FileDescriptor PreferenceFile::lock() {
  // The lock file stays for good: removing it would let two writers lock two files.
  FileDescriptor file = lockFile(sibling(path_, ".lock"), LockPatience);
  if (!file) {
    failed(errno == EWOULDBLOCK ? "cannot be locked: another program does not give its lock back"
                                : systemProblem("cannot be locked"));
  }
  return file;
}

const PropertyList::Dictionary& PreferenceFile::contents() {
  if (signature() != seen_ && read() == State::Damaged) {
    // A damaged file is moved only under the lock, after another look: another process may have
    // been faster, and a whole file may stand here again.
    const FileDescriptor locked = lock();
    if (!locked) {
      failed("is damaged and cannot be set aside");
    } else if (readAtRest(locked) == State::Damaged) {
      setAside();
    }
  }
  return contents_;
}

PreferenceFile::State PreferenceFile::read() {
  seen_ = signature();
  droppedKeys_.clear();
  if (seen_.size < 0) {
    contents_.clear();
    return State::Read;
  }
  const auto file = contentsOfRegularFile(path_);
  if (!file.bytes) {
    failed(file.problem);
    seen_ = {};  // The next look-up tries again.
    return State::Unreadable;
  }
  auto dictionary = parsed(*file.bytes, &droppedKeys_);
  if (!dictionary) return State::Damaged;
  contents_ = std::move(*dictionary);
  if (!droppedKeys_.empty()) {
    std::string keys;
    for (const std::string& key : droppedKeys_)
      keys += " " + key;
    failed("holds values that cannot be read, and the defaults hold for them:" + keys);
  }
  return State::Read;
}

PreferenceFile::State PreferenceFile::readAtRest(const FileDescriptor& locked) {
  const auto isAtRest = [&] {
    // The present by the file system's clock, by which the file's own time is told.
    struct stat status {};
    if (futimens(locked.get(), nullptr) != 0 || fstat(locked.get(), &status) != 0) return true;
    const auto age = std::chrono::seconds(status.st_mtim.tv_sec) +
                     std::chrono::nanoseconds(status.st_mtim.tv_nsec - seen_.modified);
    return age < 0s || age >= RestTime;
  };
  const auto deadline = Clock::now() + RestPatience;
  State state = read();
  while (state == State::Damaged && !isAtRest() && Clock::now() < deadline) {
    std::this_thread::sleep_for(RestPause);
    if (signature() != seen_) state = read();
  }
  if (state != State::Damaged || isAtRest()) return state;
  failed("cannot be read: another program keeps changing it");
  seen_ = {};
  return State::Unreadable;
}

bool PreferenceFile::setAside() {
  const fs::path file = linkedFile(path_);
  const fs::path aside = asideName(file);
  if (rename(file.c_str(), aside.c_str()) != 0) {
    return failed(systemProblem("is damaged and cannot be set aside"));
  }
  contents_.clear();
  NSLog("error: the settings in " + path_.string() + " are damaged; they were set aside as " +
        aside.string() + " and the defaults hold");
  return true;
}

bool PreferenceFile::keepCopy() {
  const fs::path file = linkedFile(path_);
  const fs::path aside = asideName(file);
  std::error_code error;
  if (!fs::copy_file(file, aside, error)) {
    return failed("cannot be written: no copy can be made of it: " + error.message());
  }
  NSLog("error: the settings in " + path_.string() + " are kept as they were in " + aside.string());
  return true;
}

bool PreferenceFile::apply(const Changes& changes) {
  std::error_code error;
  fs::create_directories(path_.parent_path(), error);
  const FileDescriptor locked = lock();
  if (!locked) return false;
  const State state = readAtRest(locked);
  if (state == State::Unreadable) return false;  // To replace it would lose what it holds.
  if (state == State::Damaged && !setAside()) return false;
  PropertyList::Dictionary updated = contents_;
  for (const auto& [key, value] : changes) {
    if (value.isNull()) {
      updated.erase(key);
    } else {
      updated.insert_or_assign(key, value);
    }
  }
  if (updated == contents_) return true;
  if (!droppedKeys_.empty() && !keepCopy()) return false;
  return replace(updated);
}

bool PreferenceFile::replace(const PropertyList::Dictionary& contents) {
  const fs::path file = linkedFile(path_);
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  const fs::path fresh = sibling(file, ".new");  // One name for all: the lock guards it.
  std::string problem = writeProblem(fresh, contents);
  if (problem.empty() && rename(fresh.c_str(), file.c_str()) != 0) {
    problem = systemProblem("cannot be replaced");
  }
  if (!problem.empty()) {
    unlink(fresh.c_str());
    return failed(problem);
  }
  const FileDescriptor folder(open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) fsync(folder.get());
  seen_ = signature();
  contents_ = contents;
  droppedKeys_.clear();
  lastProblem_.clear();
  return true;
}

bool PreferenceFile::failed(std::string_view problem) {
  // A read is tried at every look-up; the log gets each reason once.
  if (problem != lastProblem_) NSLog("error: " + path_.string() + " " + std::string(problem));
  lastProblem_ = problem;
  return false;
}
