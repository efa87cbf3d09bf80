// Notices that the clock was set.
//
// | what happens                                    | seen here                           |
// |-------------------------------------------------|-------------------------------------|
// | the clock is set, by hand or by a time service  | yes, at once                        |
// | the machine resumes from suspend                | yes: the kernel sets its clock      |
// | a time service slews the clock (runs it faster) | no; each tick aims at the new time  |
// | a container's own time namespace is set         | no; the kernel does not tell        |
//
// A timer on the wall clock that is never due is cancelled by the kernel when the clock jumps.

#include <glib-unix.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cstdint>

#include "Platform/Foundation/Files/FileDescriptor.h"
#include "Platform/Foundation/Notifications/DesktopWatch_p.h"

namespace {

class SystemClockWatch : public DesktopWatch {
 public:
  SystemClockWatch() : timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (!timer_) return;
    arm();
    source_ = g_unix_fd_add(timer_.get(), G_IO_IN, becameReadable, this);
  }

  ~SystemClockWatch() override {
    if (source_ != 0) g_source_remove(source_);
  }

 private:
  void arm() const {
    itimerspec never{};
    never.it_value.tv_sec = 253'402'300'799;  // The end of the year 9999.
    timerfd_settime(timer_.get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
  }

  static gboolean becameReadable(int timer, GIOCondition, gpointer self) {
    uint64_t expirations = 0;
    [[maybe_unused]] const ssize_t count = read(timer, &expirations, sizeof expirations);
    static_cast<SystemClockWatch*>(self)->arm();
    deliverDesktopNotification("NSSystemClockDidChangeNotification");
    return G_SOURCE_CONTINUE;
  }

  FileDescriptor timer_;
  guint source_ = 0;
};

}  // namespace

std::unique_ptr<DesktopWatch> makeSystemClockWatch() {
  return std::make_unique<SystemClockWatch>();
}
