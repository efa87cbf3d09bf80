#include "Platform/Foundation/PreferenceFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"

namespace fs = std::filesystem;

namespace {

/// Owns an open file, or nothing (-1).
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

fs::path sibling(const fs::path& path, const std::string& suffix) {
  fs::path result = path;
  result += suffix;
  return result;
}

/// The lock file stays for good: removing it would let two writers lock two files. The kernel
/// drops the lock of a process that dies.
FileDescriptor lock(const fs::path& path) {
  FileDescriptor file(open(sibling(path, ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!file) return file;
  while (flock(file.get(), LOCK_EX) != 0) {
    if (errno != EINTR) return FileDescriptor(-1);
  }
  return file;
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

/// Nothing, with the reason in `errno`, if the file cannot be read.
std::optional<std::string> fileBytes(const fs::path& path) {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return std::nullopt;
  std::string bytes;
  std::array<char, 16384> block{};
  while (true) {
    const ssize_t count = ::read(file.get(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) return bytes;
    bytes.append(block.data(), static_cast<size_t>(count));
  }
}

/// The dictionary that a file's bytes hold, or nothing if they are no such list.
std::optional<PropertyList::Dictionary> parsed(const std::string& bytes) {
  const auto list = propertyListWithData(bytes);
  if (!list || list->dictionary() == nullptr) return std::nullopt;
  return *list->dictionary();
}

}  // namespace

PreferenceFile::Signature PreferenceFile::signature() const {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_size,
          status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec};
}

const PropertyList::Dictionary& PreferenceFile::contents() {
  if (signature() != seen_ && read() == State::Damaged) {
    // A damaged file is moved only under the lock, after another look: another process may have
    // been faster, and a whole file may stand here again.
    const FileDescriptor locked = lock(path_);
    if (read() == State::Damaged) setAside();
  }
  return contents_;
}

PreferenceFile::State PreferenceFile::read() {
  seen_ = signature();
  contents_.clear();
  if (seen_.size < 0) return State::Read;
  const auto bytes = fileBytes(path_);
  if (!bytes) {
    failed("cannot be read");
    seen_ = {};  // The next look-up tries again.
    return State::Unreadable;
  }
  auto dictionary = parsed(*bytes);
  if (!dictionary) return State::Damaged;
  contents_ = std::move(*dictionary);
  return State::Read;
}

void PreferenceFile::setAside() {
  const auto time = static_cast<int64_t>(NSDate::date().timeIntervalSince1970());
  fs::path aside;
  for (int attempt = 0; aside.empty() || fs::exists(aside); ++attempt) {
    aside = sibling(path_, ".corrupt-" + std::to_string(time + attempt));
  }
  if (rename(path_.c_str(), aside.c_str()) == 0) {
    NSLog("error: the settings in " + path_.string() + " are damaged; they were set aside as " +
          aside.filename().string() + " and the defaults hold");
  } else {
    failed("is damaged and cannot be set aside");
  }
}

bool PreferenceFile::apply(const Changes& changes) {
  std::error_code error;
  fs::create_directories(path_.parent_path(), error);
  const FileDescriptor locked = lock(path_);
  if (!locked) return failed("cannot be locked");
  const State state = read();
  if (state == State::Unreadable) return false;  // To replace it would lose what it holds.
  if (state == State::Damaged) setAside();
  PropertyList::Dictionary updated = contents_;
  for (const auto& [key, value] : changes) {
    if (value.isNull()) {
      updated.erase(key);
    } else {
      updated.insert_or_assign(key, value);
    }
  }
  return updated == contents_ || replace(updated);
}

bool PreferenceFile::replace(const PropertyList::Dictionary& contents) {
  // One fixed name, guarded by the lock: what a killed writer left is overwritten by the next.
  const fs::path fresh = sibling(path_, ".new");
  {  // The file is closed before it takes the old one's place.
    const FileDescriptor file(open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!file || !writeAll(file.get(), dataWithPropertyList(contents)) || fsync(file.get()) != 0) {
      return failed("cannot be written");
    }
  }
  if (rename(fresh.c_str(), path_.c_str()) != 0) return failed("cannot be replaced");
  const FileDescriptor folder(
      open(path_.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) fsync(folder.get());
  seen_ = signature();
  contents_ = contents;
  return true;
}

bool PreferenceFile::failed(std::string_view what) {
  // A read is tried at every look-up; the log gets each reason once.
  std::string failure = path_.string() + " " + std::string(what) + ": " + std::strerror(errno);
  if (failure != lastFailure_) NSLog("error: " + failure);
  lastFailure_ = std::move(failure);
  return false;
}
