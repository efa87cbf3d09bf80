#include "Platform/Foundation/Process/NSLog.h"

#include <unistd.h>

#include <string>

void NSLog(std::string_view text) {
  // One write for the whole line, so that lines of several processes do not mix.
  std::string line = "velmora: ";
  line.append(text).push_back('\n');
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}
