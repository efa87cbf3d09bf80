#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/AppKit/Menus/NSMenuItem.h"

/// The texts of a row in reading order: from the top down, and in a line from its beginning.
std::vector<std::string> rowTexts(const NSMenuItem& item);

/// What is read aloud for a row: its own label, else its texts.
std::string rowName(const NSMenuItem& item);

/// Whether one of the row's texts begins with `beginning`, which is in lower case.
bool rowHasTextBeginning(const NSMenuItem& item, std::string_view beginning);
