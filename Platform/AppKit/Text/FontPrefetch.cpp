#include "Platform/AppKit/Text/FontPrefetch.h"

#include <fontconfig/fontconfig.h>

#include <future>

namespace {

std::future<FcBool>& prefetch() {
  static std::future<FcBool> reading;
  return reading;
}

}  // namespace

void prefetchFonts() { prefetch() = std::async(std::launch::async, FcInit); }

void waitForPrefetchedFonts() {
  if (prefetch().valid()) prefetch().get();
}
