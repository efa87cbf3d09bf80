#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/Time/NSDate.h"

/// A fresh empty folder inside this program's own.
std::filesystem::path freshFolder();

void writeFile(const std::filesystem::path& file, std::string_view bytes);
std::string readFile(const std::filesystem::path& file);

/// A file of this folder's `Fixtures`.
std::filesystem::path fixture(std::string_view name);

/// "2024-03-31 01:00:00" in UTC, or less of it down to the date.
NSDate utc(std::string_view text);

/// Sets an environment variable, or unsets it, for the rest of the test.
struct EnvironmentVariable {
  EnvironmentVariable(const std::string& name, const std::optional<std::string>& value);
};
