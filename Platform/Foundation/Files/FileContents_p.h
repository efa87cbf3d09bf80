#pragma once

#include <filesystem>
#include <optional>
#include <string>

/// What a file holds, or why it cannot be told.
struct FileContents {
  std::optional<std::string> bytes;
  std::string problem;  ///< "cannot be read: Permission denied"; empty where there are bytes.
};

/// Reads a whole regular file, also through a link, of at most 16 MiB. Anything else, such as a
/// pipe or a device, is a problem: it is not waited for.
FileContents contentsOfRegularFile(const std::filesystem::path& path);
