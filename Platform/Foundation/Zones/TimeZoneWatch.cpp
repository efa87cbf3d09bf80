// Notices that the machine's time zone was changed.
//
// | what happens                                        | seen here                            |
// |-----------------------------------------------------|--------------------------------------|
// | the link /etc/localtime is pointed elsewhere        | yes, in its folder                   |
// | /etc/localtime is a file and is written or replaced | yes, in its folder                   |
// | the rules change: a new tzdata package              | yes, at the link's target            |
// | a settings panel goes through timedated             | yes, by its signal, even where the   |
// |                                                     | folder cannot be watched             |
// | the same while the system bus is away               | yes, when it is there again          |
// | TZ changes in another process's environment         | no; a process keeps its environment  |
// | a folder above the link's target is renamed         | no, until the link is touched        |
//
// Several of these come together for one change; it is told once.

#include <sys/stat.h>

#include <filesystem>
#include <tuple>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/Notifications/DesktopWatch_p.h"
#include "Platform/Foundation/Notifications/MessageBus_p.h"
#include "Platform/Foundation/Notifications/SignalSubscription_p.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"

namespace fs = std::filesystem;

namespace {

using Monitor = LibraryHandle<GFileMonitor, g_object_unref>;

/// What tells one state of the zone from another: where the link leads, and which file is there.
using ZoneState = std::tuple<std::string, ino_t, off_t, time_t, long>;

ZoneState presentState() {
  const fs::path file = localTimeFile();
  std::error_code error;
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) status = {};
  return {fs::canonical(file, error).string(), status.st_ino, status.st_size, status.st_mtim.tv_sec,
          status.st_mtim.tv_nsec};
}

class TimeZoneWatch : public DesktopWatch, private MessageBusDelegate {
 public:
  TimeZoneWatch() : state_(presentState()), link_(watch(localTimeFile())) {
    watchTarget();
    registration_ = MessageBus::systemBus().addDelegate(*this);
  }

 private:
  void busConnected(GDBusConnection* bus) override {
    subscription_ = std::make_unique<SignalSubscription>(
        bus, "org.freedesktop.timedate1", "org.freedesktop.DBus.Properties", "PropertiesChanged",
        "/org/freedesktop/timedate1", "org.freedesktop.timedate1", propertiesChanged, this);
    look();
  }

  Monitor watch(const fs::path& path) {
    const LibraryHandle<GFile, g_object_unref> file(g_file_new_for_path(path.c_str()));
    Monitor monitor(g_file_monitor_file(file.get(), G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr));
    if (monitor) g_signal_connect(monitor.get(), "changed", G_CALLBACK(fileChanged), this);
    return monitor;
  }

  void watchTarget() {
    const fs::path target = std::get<std::string>(state_);
    target_.reset();
    if (!target.empty() && target != localTimeFile()) target_ = watch(target);
  }

  void look() {
    ZoneState state = presentState();
    if (state == state_) return;
    state_ = std::move(state);
    watchTarget();
    deliverDesktopNotification("NSSystemTimeZoneDidChangeNotification");
  }

  static void fileChanged(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent, gpointer self) {
    static_cast<TimeZoneWatch*>(self)->look();
  }

  static void propertiesChanged(GDBusConnection*, const char*, const char*, const char*,
                                const char*, GVariant*, gpointer self) {
    static_cast<TimeZoneWatch*>(self)->look();
  }

  ZoneState state_;
  Monitor link_;
  Monitor target_;
  std::unique_ptr<SignalSubscription> subscription_;
  Registration registration_;
};

}  // namespace

std::unique_ptr<DesktopWatch> makeTimeZoneWatch() { return std::make_unique<TimeZoneWatch>(); }
