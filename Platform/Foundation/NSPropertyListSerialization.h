#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/PropertyList.h"

/// Reads a property list in its XML or binary form. Nothing if the bytes are neither, are damaged,
/// or hold a value outside `PropertyList`.
std::optional<PropertyList> propertyListWithData(std::string_view bytes);

/// The same of a file; nothing also if it cannot be read.
std::optional<PropertyList> propertyListWithContentsOfFile(const std::filesystem::path& file);

/// The XML form of a value, with reals written so that they read back to the same double.
std::string dataWithPropertyList(const PropertyList& value);
