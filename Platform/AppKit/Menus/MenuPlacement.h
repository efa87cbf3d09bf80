#pragma once

#include "Platform/AppKit/Events/NSApplication.h"
#include "Platform/Foundation/NSGeometry.h"

/// Where menus stand. All rectangles are points of the desktop, y downwards. `area` is the part of
/// the monitor that menus keep within; a menu higher than it is cut to its height.

/// Below an item of the bar, from the item's edge where a line begins.
NSRect menuFrameBelow(NSRect slot, NSSize size, NSRect area,
                      NSUserInterfaceLayoutDirection direction);

struct SubmenuPlace {
  NSRect frame;
  bool isLeft = false;  ///< Of the menu that it belongs to.
};

/// Beside a row, `firstRow` points higher than it so that its own first row is level with it; on
/// the left where `prefersLeft` and there is room, or where there is none on the right.
SubmenuPlace submenuPlace(NSRect menu, NSRect row, NSSize size, NSRect area, bool prefersLeft,
                          double firstRow);

/// Whether a pointer that went from `from` to `to` is on its way into an open submenu: both the
/// step and the goal lie within the wedge from `from` to the submenu's near edge.
bool isHeadingTo(NSRect submenu, NSPoint from, NSPoint to);
