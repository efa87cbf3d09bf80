#pragma once

#include <cstdint>

/// Moments on a run loop's clock and the spans between them, in nanoseconds. What lies beyond their
/// range, 292 years, is its end: a moment that never comes.

/// The span of so many seconds; none for what is not a number.
int64_t nanosecondsFromSeconds(double seconds);

int64_t momentAfter(int64_t moment, int64_t nanoseconds);
