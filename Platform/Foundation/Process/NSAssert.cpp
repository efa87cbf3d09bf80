#include "Platform/Foundation/Process/NSAssert.h"

#include <cstdlib>

#include "Platform/Foundation/Process/NSLog.h"

void NSAssertionFailed(std::string_view words) {
  NSLog(words);
  std::abort();
}
