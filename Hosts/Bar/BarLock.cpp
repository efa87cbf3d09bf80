#include "Hosts/Bar/BarLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

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

BarLock::~BarLock() { release(); }

void BarLock::release() {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
}

bool BarLock::take(const std::string& monitor) {
  if (descriptor_ >= 0 && monitor == monitor_) return true;
  const std::string folder = variable("XDG_RUNTIME_DIR");
  if (folder.empty()) return true;
  const std::string path = folder + "/" + fileName(monitor);
  const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor < 0) return true;
  if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    close(descriptor);
    return false;
  }
  release();
  descriptor_ = descriptor;
  monitor_ = monitor;
  return true;
}
