#pragma once

#include <array>
#include <memory>

#include "Platform/AppKit/Drawing/NSImage.h"

// Stretchable pictures: the parts at the ends keep their size, those between are stretched. Where
// parts meet falls between pixels, so that there is no seam at any scale. A null part draws
// nothing.

/// The parts from left to right, or from top to bottom where `vertical`.
void NSDrawThreePartImage(NSRect frame, const std::array<std::shared_ptr<NSImage>, 3>& parts,
                          bool vertical, double alpha, bool flipped);

/// The parts row by row from the top. `flipped` tells that y grows downwards in the current
/// context.
void NSDrawNinePartImage(NSRect frame, const std::array<std::shared_ptr<NSImage>, 9>& parts,
                         double alpha, bool flipped);
