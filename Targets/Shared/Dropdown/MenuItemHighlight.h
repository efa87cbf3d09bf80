#pragma once

class NSMenu;
class NSMenuItem;
class ZEVMenuItem_Time;

/// Lights a row of a menu, with what of it reaches into its neighbours, and no other; null lights
/// none. Done on the next turn of the main queue, as a menu that is being tracked asks for it; row
/// and menu may go meanwhile.
void highlightMenuItem(NSMenu& menu, NSMenuItem* item);

/// Lights no row, at once.
void resetMenuItems(NSMenu& menu);

/// Has a row of 15 points lit by 17, one more above and below.
void menuItemResizeHightlight(ZEVMenuItem_Time& item);
