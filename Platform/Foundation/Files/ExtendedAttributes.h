#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

/// Attributes of a file beside its contents, without a value: there or not. They are the user's
/// ones of the system, whose names begin with "user." there. Links are followed.

/// Gives the file an attribute. Some file systems have none: `std::errc::not_supported`.
std::error_code setExtendedAttribute(const std::filesystem::path& file, std::string_view name);

/// Takes an attribute away. That there is none is no error.
std::error_code removeExtendedAttribute(const std::filesystem::path& file, std::string_view name);

bool hasExtendedAttribute(const std::filesystem::path& file, std::string_view name);
