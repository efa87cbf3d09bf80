#include "Platform/Foundation/Files/FileContents_p.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "Platform/Foundation/Files/FileDescriptor.h"

namespace {

constexpr size_t MaximumSize = 16 << 20;

FileContents unreadable() { return {{}, std::string("cannot be read: ") + std::strerror(errno)}; }

}  // namespace

FileContents contentsOfRegularFile(const std::filesystem::path& path) {
  // Opening a pipe waits for its other end, unless it is told not to.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0) return unreadable();
  if (!S_ISREG(status.st_mode)) return {{}, "cannot be read: it is no regular file"};
  std::string bytes;
  std::array<char, 16384> block{};
  while (true) {
    const ssize_t count = read(file.get(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return unreadable();
    if (count == 0) return {std::move(bytes), {}};
    bytes.append(block.data(), static_cast<size_t>(count));
    if (bytes.size() > MaximumSize) return {{}, "cannot be read: it is larger than 16 MiB"};
  }
}
