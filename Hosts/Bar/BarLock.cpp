#include "Hosts/Bar/BarLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cstdlib>
#include <utility>

namespace {

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// Display and monitor in one file name.
std::string fileName(const std::string& monitor) {
  std::string name =
      "velmora-menubar-" + variable("WAYLAND_DISPLAY") + "-" + variable("DISPLAY") + "-" + monitor;
  for (char& character : name) {
    if (character == '/') character = '_';
  }
  return name + ".lock";
}

}  // namespace

bool BarLock::take(const std::string& monitor) {
  if (file_ && monitor == monitor_) return true;
  const std::string folder = variable("XDG_RUNTIME_DIR");
  if (folder.empty()) return true;
  const std::string path = folder + "/" + fileName(monitor);
  FileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!file) return true;
  if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) return false;
  file_ = std::move(file);
  monitor_ = monitor;
  return true;
}
