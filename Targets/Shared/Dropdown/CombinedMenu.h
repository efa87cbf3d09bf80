#pragma once

class ZEVMenu_Time;
class ZEVMenuExtra_Time;

/// Fills the menu of an extra of several modules: for each one that "CombinedDropdownDisplayMode"
/// lists by its number, a title and the module's row. Says so where that leaves nothing.
void fillCombinedMenu(ZEVMenu_Time& menu, const ZEVMenuExtra_Time& extra);
