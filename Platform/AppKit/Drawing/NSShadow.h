#pragma once

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/Foundation/NSGeometry.h"

/// A shadow under text: the same shape in another colour, moved by an offset (y upwards), with a
/// sharp edge.
struct NSShadow {
  NSSize shadowOffset;
  NSColor shadowColor = NSColor::blackColor();
  friend bool operator==(const NSShadow&, const NSShadow&) = default;
};
