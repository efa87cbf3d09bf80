#pragma once

#include <cstdint>
#include <string>

struct NSOperatingSystemVersion {
  int64_t majorVersion;
  int64_t minorVersion;
  int64_t patchVersion;
};

/// The level of the interfaces that this platform gives, in the numbering that the code's feature
/// tests use: a bar that can be dark, notifications of its theme, tabular digits.
constexpr NSOperatingSystemVersion operatingSystemVersion() { return {10, 12, 0}; }

/// The name of the program's file; empty if it is unknown.
std::string processName();

/// How many processors the process may use; 1 if that is unknown.
unsigned processorCount();
