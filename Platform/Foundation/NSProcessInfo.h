#pragma once

#include <cstdint>

struct NSOperatingSystemVersion {
  int64_t majorVersion;
  int64_t minorVersion;
  int64_t patchVersion;
};

/// The level of the interfaces that this platform gives, in the numbering that the code's feature
/// tests use: a bar that can be dark, notifications of its theme, tabular digits.
constexpr NSOperatingSystemVersion operatingSystemVersion() { return {10, 12, 0}; }
