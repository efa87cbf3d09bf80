#pragma once

#include <optional>
#include <string_view>

#include "Platform/Foundation/PropertyList.h"

/// Reads a property list in its binary form ("bplist00"). Nothing for damaged bytes, for references
/// that nest or multiply beyond any honest list, and for values outside `PropertyList`. A keyed
/// archive's reference to one of its objects reads as a dictionary with the number under "CF$UID",
/// as in the XML form.
std::optional<PropertyList> binaryPropertyListWithData(std::string_view bytes);
