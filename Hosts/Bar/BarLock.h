#pragma once

#include <string>

#include "Platform/Foundation/Files/FileDescriptor.h"

/// Keeps a second bar off a monitor: a locked file in the session's runtime folder, one for each
/// display and monitor. It goes with the process, however that ends.
class BarLock {
 public:
  /// Leaves the monitor of before and takes that of the name. False if another process has it.
  /// Where the session has no such folder there is nothing to take, and it is true.
  bool take(const std::string& monitor);

 private:
  std::string monitor_;
  FileDescriptor file_;
};
