#include "Platform/Foundation/Process/StandardDescriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

void openMissingStandardDescriptors() {
  // In their order, since a file that is opened gets the lowest number that is free. The wrong way
  // round, so that reading and writing fail as they would have: what is asked to print must tell
  // that it could not.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    [[maybe_unused]] const int opened =
        open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}
