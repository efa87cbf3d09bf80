#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// Reads a property list in its XML or binary form. Nothing if the bytes are neither or are
/// damaged. What reads is written and read again as the same: dates come to the second, and
/// characters that XML cannot hold are left out.
///
/// A value that `PropertyList` or the XML form cannot hold, such as a number out of range, takes
/// only the entry of the innermost dictionary around it along; that entry's key is added to
/// `droppedKeys`.
std::optional<PropertyList> propertyListWithData(std::string_view bytes,
                                                 std::vector<std::string>* droppedKeys = nullptr);

/// The same of a regular file; nothing also if it cannot be read.
std::optional<PropertyList> propertyListWithContentsOfFile(const std::filesystem::path& file);

/// The XML form of a value, with reals written so that they read back to the same double.
std::string dataWithPropertyList(const PropertyList& value);
