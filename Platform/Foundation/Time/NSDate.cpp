#include "Platform/Foundation/Time/NSDate.h"

#include <array>
#include <cmath>
#include <ctime>

#include "Platform/Foundation/Time/SystemClock.h"

NSDate NSDate::date() { return NSDate(SystemClock::sharedClock().timeIntervalSince1970()); }

std::string NSDate::description() const {
  const auto seconds = static_cast<time_t>(std::floor(seconds_));
  tm fields{};
  if (gmtime_r(&seconds, &fields) == nullptr) return "(out of range)";
  std::array<char, 64> text{};
  const size_t length = strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S +0000", &fields);
  return {text.data(), length};
}
