#pragma once

#include <optional>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// The colour that a keyed archive holds: in RGB, white or CMYK, calibrated or of the device. The
/// archive is a property list with the objects in one list and references between them. Nothing for
/// any other object, and for data that is no such archive.
std::optional<NSColor> unarchiveObjectWithData(const PropertyList::Data& data);
