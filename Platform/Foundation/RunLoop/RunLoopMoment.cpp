#include "Platform/Foundation/RunLoop/RunLoopMoment_p.h"

#include <cmath>
#include <limits>

namespace {

using Limits = std::numeric_limits<int64_t>;

}  // namespace

int64_t nanosecondsFromSeconds(double seconds) {
  const double nanoseconds = seconds * 1e9;
  if (std::isnan(nanoseconds)) return 0;
  // The bounds as doubles: the upper one is the first number beyond the range.
  if (nanoseconds >= -static_cast<double>(Limits::min())) return Limits::max();
  if (nanoseconds <= static_cast<double>(Limits::min())) return Limits::min();
  return std::llround(nanoseconds);
}

int64_t momentAfter(int64_t moment, int64_t nanoseconds) {
  if (nanoseconds > 0 && moment > Limits::max() - nanoseconds) return Limits::max();
  if (nanoseconds < 0 && moment < Limits::min() - nanoseconds) return Limits::min();
  return moment + nanoseconds;
}
