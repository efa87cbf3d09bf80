#include "Platform/Dispatch/DispatchSource.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include "Platform/Dispatch/DispatchFunctions.h"
#include "Platform/Foundation/Files/FileDescriptor.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/RunLoop/RunLoopMoment_p.h"

namespace {

/// The longest that a timer trusts the run loop's clock, which knows nothing of suspend and of the
/// wall clock being set. Seconds.
constexpr double LongestWait = 3600;

/// A handler that does not start once it was cancelled. It may cancel itself.
class CancellableHandler {
 public:
  explicit CancellableHandler(std::function<void()> handler) : handler_(std::move(handler)) {}

  void call() {
    const std::lock_guard guard(mutex_);
    if (!isCancelled_) handler_();
  }

  void cancel() {
    const std::lock_guard guard(mutex_);
    isCancelled_ = true;
  }

 private:
  std::recursive_mutex mutex_;
  std::function<void()> handler_;
  bool isCancelled_ = false;
};

}  // namespace

class DispatchTimer::State : public std::enable_shared_from_this<State> {
 public:
  State(const NSDate& deadline, dispatch_queue_t queue, std::function<void()> handler)
      : deadline_(deadline), queue_(std::move(queue)), handler_(std::move(handler)) {}

  void aim() {
    const double remaining =
        deadline_.timeIntervalSince1970() - NSDate::date().timeIntervalSince1970();
    const int64_t wait = nanosecondsFromSeconds(std::clamp(remaining, 0.0, LongestWait));
    const std::lock_guard guard(mutex_);
    if (isCancelled_) return;
    timer_ = loop_.scheduleAt(momentAfter(loop_.now(), wait), [watched = weak_from_this()] {
      if (const auto self = watched.lock()) self->lookAtClock();
    });
  }

  void cancel() {
    {
      const std::lock_guard guard(mutex_);
      isCancelled_ = true;
      timer_.reset();
    }
    handler_.cancel();
  }

 private:
  void lookAtClock() {
    if (NSDate::date() < deadline_) return aim();
    dispatch_async(queue_, [self = shared_from_this()] { self->handler_.call(); });
  }

  const NSDate deadline_;
  const dispatch_queue_t queue_;
  NSRunLoop& loop_ = NSRunLoop::mainRunLoop();
  CancellableHandler handler_;
  std::mutex mutex_;
  NSRunLoop::Timer timer_;
  bool isCancelled_ = false;
};

DispatchTimer::DispatchTimer(const NSDate& deadline, dispatch_queue_t queue,
                             std::function<void()> handler)
    : state_(std::make_shared<State>(deadline, std::move(queue), std::move(handler))) {
  state_->aim();
}

DispatchTimer& DispatchTimer::operator=(DispatchTimer&& other) noexcept {
  reset();
  state_ = std::move(other.state_);
  return *this;
}

void DispatchTimer::reset() {
  if (const auto state = std::exchange(state_, nullptr)) state->cancel();
}

class DispatchFileWatch::State : public std::enable_shared_from_this<State> {
 public:
  State(int descriptor, uint32_t events, dispatch_queue_t queue, std::function<void()> handler)
      : events_(events),
        queue_(std::move(queue)),
        handler_(std::move(handler)),
        file_(fcntl(descriptor, F_DUPFD_CLOEXEC, 0)),
        notifications_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // By the open file: its path may lead to another one by now.
    const std::string path = "/proc/self/fd/" + std::to_string(file_.get());
    inotify_add_watch(notifications_.get(), path.c_str(), IN_MOVE_SELF | IN_ATTRIB);
  }

  void listen() {
    if (!notifications_) return;
    watch_ = loop_.watchDescriptor(notifications_.get(), [watched = weak_from_this()] {
      const auto self = watched.lock();
      if (!self || !self->takeNews()) return;
      dispatch_async(self->queue_, [self] { self->deliver(); });
    });
  }

  void cancel() {
    watch_.reset();
    handler_.cancel();
  }

  /// Reads what the kernel tells. Returns whether anything awaits delivery.
  bool takeNews() {
    const std::lock_guard guard(mutex_);
    alignas(inotify_event) std::array<char, 4096> block{};
    while (true) {
      const ssize_t count = read(notifications_.get(), block.data(), block.size());
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return (happened_ & events_) != 0;
      for (ssize_t offset = 0; offset < count;) {
        const auto* event = reinterpret_cast<const inotify_event*>(block.data() + offset);
        note(event->mask);
        offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      }
    }
  }

  void deliver() {
    {
      const std::lock_guard guard(mutex_);
      if ((std::exchange(happened_, 0) & events_) == 0) return;
    }
    handler_.call();
  }

 private:
  void note(uint32_t mask) {
    if ((mask & IN_MOVE_SELF) != 0) happened_ |= DISPATCH_VNODE_RENAME;
    // A file that is held open is deleted only when it is closed; what changes is its link count.
    struct stat status {};
    if ((mask & IN_ATTRIB) != 0 && fstat(file_.get(), &status) == 0 && status.st_nlink == 0) {
      happened_ |= DISPATCH_VNODE_DELETE;
    }
  }

  const uint32_t events_;
  const dispatch_queue_t queue_;
  NSRunLoop& loop_ = NSRunLoop::mainRunLoop();
  CancellableHandler handler_;
  const FileDescriptor file_;
  const FileDescriptor notifications_;
  std::mutex mutex_;
  uint32_t happened_ = 0;
  NSRunLoop::Watch watch_;
};

DispatchFileWatch::DispatchFileWatch(int descriptor, uint32_t events, dispatch_queue_t queue,
                                     std::function<void()> handler)
    : state_(std::make_shared<State>(descriptor, events, std::move(queue), std::move(handler))) {
  state_->listen();
}

DispatchFileWatch& DispatchFileWatch::operator=(DispatchFileWatch&& other) noexcept {
  reset();
  state_ = std::move(other.state_);
  return *this;
}

void DispatchFileWatch::reset() {
  if (const auto state = std::exchange(state_, nullptr)) state->cancel();
}
