#include "Platform/EventKit/FolderWatch_p.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <string_view>
#include <utility>

#include "Platform/EventKit/CalendarFiles_p.h"
#include "Platform/Foundation/Files/FileDescriptor.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

namespace {

bool matters(const inotify_event& event) {
  if ((event.mask & IN_IGNORED) != 0) return false;
  if (event.len == 0) return true;  // The folder itself, or too many events to tell.
  const std::string_view name = event.name;
  return isCalendarFileName(name) || ((event.mask & IN_ISDIR) != 0 && !name.starts_with('.')) ||
         name == DisplayNameFile || name == ColorFile;
}

}  // namespace

class FolderWatch::State : public std::enable_shared_from_this<State> {
 public:
  explicit State(std::function<void()> changed)
      : changed_(std::move(changed)), notifications_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

  void listen() {
    if (!notifications_) return;
    watch_ = loop_.watchDescriptor(notifications_.get(), [watched = weak_from_this()] {
      if (const auto self = watched.lock()) self->takeNews();
    });
  }

  void cancel() {
    isCancelled_ = true;
    watch_.reset();
  }

  bool watchFolder(const std::filesystem::path& folder) const {
    constexpr uint32_t Events = IN_CREATE | IN_CLOSE_WRITE | IN_MOVE | IN_DELETE | IN_DELETE_SELF |
                                IN_MOVE_SELF | IN_ONLYDIR;
    return inotify_add_watch(notifications_.get(), folder.c_str(), Events) >= 0;
  }

 private:
  void takeNews() {
    alignas(inotify_event) std::array<char, 4096> block{};
    bool isNews = false;
    while (true) {
      const ssize_t count = read(notifications_.get(), block.data(), block.size());
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) break;
      for (ssize_t offset = 0; offset < count;) {
        const auto* event = reinterpret_cast<const inotify_event*>(block.data() + offset);
        isNews = isNews || matters(*event);
        offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      }
    }
    if (isNews && !isCancelled_) changed_();
  }

  const std::function<void()> changed_;
  const FileDescriptor notifications_;
  NSRunLoop& loop_ = NSRunLoop::mainRunLoop();
  NSRunLoop::Watch watch_;
  std::atomic<bool> isCancelled_ = false;
};

FolderWatch::FolderWatch(std::function<void()> changed)
    : state_(std::make_shared<State>(std::move(changed))) {
  state_->listen();
}

FolderWatch::~FolderWatch() { state_->cancel(); }

void FolderWatch::add(const std::filesystem::path& folder) {
  std::filesystem::path present = folder;
  while (!state_->watchFolder(present) && present.has_relative_path())
    present = present.parent_path();
}
