#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// Reads a property list in its binary form ("bplist00"), as `propertyListWithData` tells. Nothing
/// for damaged bytes, and for references that nest too deep or unfold to far more than the file is
/// long. A keyed archive's reference to one of its objects reads as a dictionary with the number
/// under "CF$UID", as in the XML form.
std::optional<PropertyList> binaryPropertyListWithData(std::string_view bytes,
                                                       std::vector<std::string>& droppedKeys);
