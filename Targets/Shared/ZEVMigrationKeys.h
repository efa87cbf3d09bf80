#pragma once

#include <string_view>

/// Whether a setting of the previous version is left behind.
bool isSkippedInMigration(std::string_view oldKey);

/// The present key of a setting of the previous version; a key without a new name keeps its own.
std::string_view migratedKey(std::string_view oldKey);
