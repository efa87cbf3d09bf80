#pragma once

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Drawing/NSGradient.h"
#include "Platform/AppKit/Text/NSFont.h"

// How the dropdown looks: its fonts, and its colours in the present theme (`dropdownTheme`) and
// under the desktop's raised contrast.

/// The fonts of rows; where the machine lacks them, the system font of that size and weight.
NSFont zevNormalFont(double size);
NSFont zevLightFont(double size);
NSFont zevMediumFont(double size);
NSFont zevBoldFont(double size);

bool dropdownIsDark();
/// Whether the desktop asks for raised contrast.
bool dropdownRaisesContrast();

/// Behind rows.
NSColor dropdownBackgroundColor();
/// Of what is said, and of what says what that is.
NSColor dropdownValueColor();
NSColor dropdownLabelColor();

/// Behind a highlighted row, from its upper edge down; text on it is white.
NSGradient dropdownHighlightGradient();

/// Between groups of rows.
NSColor dropdownRuleColor();
/// A section's title, the rule below it, and what both stand on, from the rule up.
NSColor dropdownHeaderTextColor();
NSColor dropdownHeaderRuleColor();
NSGradient dropdownHeaderGradient();

/// Of a row that only acts, by whether it does anything.
NSColor dropdownActionTextColor(bool acts);
