#pragma once

#include <source_location>
#include <string_view>

/// The program's own form of a log call: an informational line, from any thread, that the caller
/// does not wait for.
void DDLogLine(std::string_view message,
               std::source_location place = std::source_location::current());
