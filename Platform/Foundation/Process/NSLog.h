#pragma once

#include <string_view>

/// Writes one line to the system log, which is standard error: a session's service manager keeps
/// it. Line ends inside `text` are written as they stand.
void NSLog(std::string_view text);
