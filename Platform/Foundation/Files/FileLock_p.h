#pragma once

#include <chrono>
#include <filesystem>

#include "Platform/Foundation/Files/FileDescriptor.h"

/// Takes an exclusive lock among processes on a file, which is made if it is not there. The lock
/// lasts as long as the result is open; the kernel drops that of a process that dies. Nothing, with
/// the reason in `errno`, if it cannot be had; the reason is `EWOULDBLOCK` if another process has
/// not given it back within `patience`.
FileDescriptor lockFile(const std::filesystem::path& path, std::chrono::milliseconds patience);
