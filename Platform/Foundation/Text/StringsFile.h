#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Texts by key.
using StringsTable = std::map<std::string, std::string, std::less<>>;

/// Reads a table in the form `"key" = "text";` with comments of both C styles and the escapes
/// \" \\ \n \r \t and \Uxxxx, in UTF-8. Nothing if any of it is not in that form.
std::optional<StringsTable> stringsTableFromText(std::string_view text);

/// The table of a file; nothing if it is missing or not in that form.
std::optional<StringsTable> stringsTableFromFile(const std::filesystem::path& file);
