#pragma once

#include <cstdint>
#include <string_view>

/// The program's own form of a log call: an informational line, from any thread, that the caller
/// does not wait for. The place is the caller's; clang 14 has no `std::source_location` to tell it.
void DDLogLine(std::string_view message, const char* file = __builtin_FILE(),
               const char* function = __builtin_FUNCTION(), int32_t line = __builtin_LINE());
