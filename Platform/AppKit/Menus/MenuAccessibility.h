#pragma once

#include <cstdint>
#include <optional>

#include "Platform/AppKit/Menus/AccessibleElement.h"
#include "Platform/AppKit/Menus/MenuTracker.h"

/// What is open, as assistive technologies are told of it; nothing if no menu is.
std::optional<AccessibleElement> accessibleMenu(const MenuTracker& tracker);

/// Does what a click on an element does, or opens its menu. False if there is no such element any
/// more, or a click on it does nothing.
bool pressAccessibleElement(MenuTracker& tracker, uint64_t id);
