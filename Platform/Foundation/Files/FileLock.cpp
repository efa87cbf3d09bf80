#include "Platform/Foundation/Files/FileLock_p.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace {

struct Wait {
  explicit Wait(FileDescriptor awaited) : file(std::move(awaited)) {}

  FileDescriptor file;
  std::mutex mutex;
  std::condition_variable ended;
  bool hasEnded = false;
  int problem = 0;  ///< As in `errno`.
};

}  // namespace

FileDescriptor lockFile(const std::filesystem::path& path, std::chrono::milliseconds patience) {
  FileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0600));
  if (!file || flock(file.get(), LOCK_EX | LOCK_NB) == 0) return file;
  if (errno != EWOULDBLOCK) return FileDescriptor(-1);

  // The kernel wakes who waits, but has no deadline. Asking now and then would have one, and may
  // never find the lock free between two busy writers. So a thread waits; where the deadline comes
  // first, the thread is the file's last owner, and the lock goes back as soon as it comes.
  const auto wait = std::make_shared<Wait>(std::move(file));
  std::thread([wait] {
    int result = 0;
    do {
      result = flock(wait->file.get(), LOCK_EX);
    } while (result != 0 && errno == EINTR);
    const std::lock_guard guard(wait->mutex);
    wait->problem = result != 0 ? errno : 0;
    wait->hasEnded = true;
    wait->ended.notify_one();
  }).detach();
  std::unique_lock guard(wait->mutex);
  const bool hasEnded = wait->ended.wait_for(guard, patience, [&] { return wait->hasEnded; });
  errno = hasEnded ? wait->problem : EWOULDBLOCK;
  return hasEnded && wait->problem == 0 ? std::move(wait->file) : FileDescriptor(-1);
}
