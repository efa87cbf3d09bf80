#pragma once

#include <cstdarg>
#include <string>

/// The text that `printf` would print.
[[gnu::format(printf, 1, 0)]] std::string formattedText(const char* format, va_list arguments);
