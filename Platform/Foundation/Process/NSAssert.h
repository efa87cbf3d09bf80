#pragma once

#include <string_view>

/// Reports a fault of the program's own that it must not live with: writes `words` to the system
/// log and aborts.
[[noreturn]] void NSAssertionFailed(std::string_view words);
