#pragma once

#include <array>
#include <cstdio>
#include <string>

/// How an object without a text of its own is named in log lines and queue labels:
/// "<FMDatabase_Time: 0x55d0c1e2a2b0>".
inline std::string objectDescription(const char* className, const void* object) {
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "<%s: %p>", className, object);
  return text.data();
}
