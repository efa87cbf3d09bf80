#include "Platform/Foundation/Process/NSProcessInfo.h"

#include <algorithm>
#include <cerrno>
#include <thread>

std::string processName() {
  return program_invocation_short_name != nullptr ? program_invocation_short_name : "";
}

unsigned processorCount() { return std::max(1U, std::thread::hardware_concurrency()); }
