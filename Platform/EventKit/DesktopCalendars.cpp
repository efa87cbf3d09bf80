#include "Platform/EventKit/DesktopCalendars_p.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/Text/NSString.h"

namespace fs = std::filesystem;

namespace {

/// Whether the session's bus can start the service, by the files that tell it how. Asking the bus
/// itself would need one.
bool isServiceInstalled() {
  const char* variable = std::getenv("XDG_DATA_DIRS");
  const std::string folders = variable != nullptr && *variable != '\0'
                                  ? variable
                                  : std::string("/usr/local/share:/usr/share");
  const auto holdsService = [](const std::string& folder) {
    std::error_code error;
    for (fs::directory_iterator each(fs::path(folder) / "dbus-1" / "services", error), end;
         !error && each != end; each.increment(error)) {
      const std::string name = each->path().filename().string();
      if (name.starts_with("org.gnome.evolution.dataserver.Calendar")) return true;
    }
    return false;
  };
  const auto all = componentsSeparatedByString(folders, ":");
  return std::any_of(all.begin(), all.end(), holdsService);
}

/// A library that finds no bus would start one.
bool isBusThere() {
  if (std::getenv("DBUS_SESSION_BUS_ADDRESS") != nullptr) return true;
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  std::error_code error;
  return folder != nullptr && fs::exists(fs::path(folder) / "bus", error);
}

std::unique_ptr<CalendarSource> loadPlugin(std::function<void()> changed) {
  std::unique_ptr<CalendarSource> made;
  if (!isServiceInstalled() || !isBusThere()) return made;
  const auto path = installationPrefix() / "lib" / "velmora5" / "VelmoraEvolution.so";
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return made;
  const auto make =
      reinterpret_cast<MakeDesktopCalendarsFunction>(dlsym(library, MakeDesktopCalendarsSymbol));
  if (make != nullptr) make(std::move(changed), made);
  return made;
}

}  // namespace

DesktopCalendars::DesktopCalendars(std::function<void()> changed) : changed_(std::move(changed)) {}

CalendarSource::Calendars DesktopCalendars::calendars() {
  if (!std::exchange(isLoaded_, true)) plugin_ = loadPlugin(changed_);
  return plugin_ ? plugin_->calendars() : Calendars{};
}

std::vector<std::shared_ptr<const EKEvent>> DesktopCalendars::events(
    const TimeSpan& span, const std::unordered_set<std::string>& calendars,
    const AddressSet& userAddresses) {
  if (!plugin_) return {};
  return plugin_->events(span, calendars, userAddresses);
}
