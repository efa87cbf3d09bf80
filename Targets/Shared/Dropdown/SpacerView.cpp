#include "Targets/Shared/Dropdown/SpacerView.h"

#include <cmath>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"

void SpacerView_Time::drawRect(NSRect rect) {
  StatInterfaceView_Time::drawRect(rect);
  const NSSize size = bounds().size;
  dropdownRuleColor().setFill();
  NSBezierPath::bezierPathWithRect(NSMakeRect(0, std::floor(size.height / 2), size.width, 1))
      .fill();
}
