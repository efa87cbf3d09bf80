#include "Platform/Foundation/NSAssert.h"

#include <cstdlib>

#include "Platform/Foundation/NSLog.h"

void NSAssertionFailed(std::string_view words) {
  NSLog(words);
  std::abort();
}
