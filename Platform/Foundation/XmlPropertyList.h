#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/PropertyList.h"

/// Reads a property list in its XML form, in UTF-8. Nothing for text that is not well-formed, has
/// an unknown element, nests too deep or holds a value that its element cannot have.
std::optional<PropertyList> xmlPropertyListWithData(std::string_view text);

/// Writes the XML form. Reals read back to the same double; null values are left out.
std::string xmlDataWithPropertyList(const PropertyList& value);
