#include "Platform/Foundation/Files/NSFileHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

std::error_code NSFileHandle::createFileAtPath(const std::filesystem::path& path) {
  const FileDescriptor made(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  return made ? std::error_code() : std::error_code(errno, std::generic_category());
}

std::unique_ptr<NSFileHandle> NSFileHandle::fileHandleForAppendingAtPath(
    const std::filesystem::path& path) {
  FileDescriptor file(open(path.c_str(), O_RDWR | O_APPEND | O_CLOEXEC | O_NOCTTY));
  if (!file) return nullptr;
  lseek(file.get(), 0, SEEK_END);
  return std::make_unique<NSFileHandle>(std::move(file));
}

void NSFileHandle::writeData(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor_.get(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail("writing a file");
    bytes.remove_prefix(static_cast<size_t>(written));
  }
}

uint64_t NSFileHandle::offsetInFile() const {
  const off_t offset = lseek(descriptor_.get(), 0, SEEK_CUR);
  if (offset < 0) fail("asking for the position in a file");
  return static_cast<uint64_t>(offset);
}

bool NSFileHandle::endsInLineEnd() const {
  const off_t size = lseek(descriptor_.get(), 0, SEEK_END);
  char last = '\n';
  return size <= 0 || pread(descriptor_.get(), &last, 1, size - 1) != 1 || last == '\n';
}

bool NSFileHandle::isFileAtPath(const std::filesystem::path& path) const {
  struct stat own {};
  struct stat other {};
  // A folder that can no longer be looked into does not mean that the file has gone.
  if (stat(path.c_str(), &other) != 0) return errno != ENOENT && errno != ENOTDIR;
  return fstat(descriptor_.get(), &own) == 0 && own.st_ino == other.st_ino &&
         own.st_dev == other.st_dev;
}

void NSFileHandle::synchronizeFile() {
  if (fsync(descriptor_.get()) != 0) fail("synchronising a file");
}
