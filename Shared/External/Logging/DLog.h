#pragma once

/// Prints the date and the text, formatted as `printf` does, as one line on standard output, for
/// debugging. From any thread.
[[gnu::format(printf, 1, 2)]] void DLog(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void FMDBLog(const char* format, ...);
