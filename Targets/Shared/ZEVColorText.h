#pragma once

#include <optional>
#include <string>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// The text form in which settings hold a colour: red, green, blue and alpha from 0 to 1 in device
/// RGB, separated by single blanks, written with two decimals.
std::string stringFromColor(const NSColor& color);

/// Nothing for a value that is not a text of four pieces. Each piece is read as a 32-bit float.
std::optional<NSColor> colorFromString(const PropertyList& value);
