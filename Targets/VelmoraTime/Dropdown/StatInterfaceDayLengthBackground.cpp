#include "Targets/VelmoraTime/Dropdown/StatInterfaceDayLengthBackground.h"

#include "Targets/Shared/Dropdown/DropdownTheme.h"

void StatInterfaceDayLengthBackground_Time::drawRect(NSRect) {
  dropdownHighlightGradient().drawInRect(bounds(), -90);
}
