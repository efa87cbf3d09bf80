#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendarCellView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/AppKit/Drawing/NSBezierPath.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Calendar/MonthDays.h"

namespace {

/// Of a cell beside which no week number stands.
constexpr double WideCell = 40;

constexpr double DotSize = 4;
constexpr double DotBottom = 7;
constexpr double DotStep = 6;
constexpr size_t MostDots = 5;

NSColor groundColor(int64_t mode) {
  const bool isDark = dropdownIsDark();
  if (mode == DayOfOtherMonthType) return NSColor::colorWithDeviceWhite(isDark ? 0.188 : 0.96, 1);
  if (mode != WeekNumberType) return NSColor::colorWithDeviceWhite(isDark ? 0.219 : 1, 1);
  return isDark ? NSColor::colorWithDeviceRed(0.239, 0.329, 0.458, 1)
                : NSColor::colorWithDeviceRed(0.792, 0.898, 0.952, 1);
}

void drawNamed(std::string_view name) {
  if (const auto image = ZEVImageNamed(name)) image->drawAtPoint({0, 0});
}

}  // namespace

StatInterfaceCalendarCellView_Time::StatInterfaceCalendarCellView_Time(NSRect frame)
    : StatInterfaceView_Time(frame) {
  setBackgroundDisabled(true);
}

void StatInterfaceCalendarCellView_Time::setToday(bool today) {
  if (std::exchange(today_, today) != today) setNeedsDisplay(true);
}

void StatInterfaceCalendarCellView_Time::setSelected(bool selected) {
  if (std::exchange(selected_, selected) != selected) setNeedsDisplay(true);
}

void StatInterfaceCalendarCellView_Time::setDrawDot(bool drawDot) {
  if (std::exchange(drawDot_, drawDot) != drawDot) setNeedsDisplay(true);
}

void StatInterfaceCalendarCellView_Time::setMode(int64_t mode) {
  if (std::exchange(mode_, mode) != mode) setNeedsDisplay(true);
}

void StatInterfaceCalendarCellView_Time::setEventColors(std::vector<NSColor> colors) {
  if (colors == eventColors_) return;
  eventColors_ = std::move(colors);
  setNeedsDisplay(true);
}

bool StatInterfaceCalendarCellView_Time::accessibilityPerformPress() {
  if (!onPress) return false;
  onPress();
  return true;
}

void StatInterfaceCalendarCellView_Time::drawRect(NSRect) {
  groundColor(mode_).setFill();
  NSBezierPath::bezierPathWithRect(bounds()).fill();
  drawMark();
  if (drawDot_ && ZEVBoolForKey("Time_CalendarShowEvents")) drawDots();
}

void StatInterfaceCalendarCellView_Time::drawMark() const {
  const bool isWide = bounds().size.width == WideCell;
  if (selected_) {
    drawNamed(isWide ? "stats-calendar-selected" : "stats-calendar-selected-week");
  } else if (today_ && dropdownIsDark()) {
    drawNamed(isWide ? "stats-calendar-today-dark" : "stats-calendar-today-dark-week");
  } else if (today_) {
    drawNamed(isWide ? "stats-calendar-today-light" : "stats-calendar-today-light-week");
  }
}

void StatInterfaceCalendarCellView_Time::drawDots() const {
  const size_t count = std::min(eventColors_.size(), MostDots);
  if (count == 0) return;
  const double length = DotSize + static_cast<double>(count - 1) * DotStep;
  double x = std::trunc((bounds().size.width - length) / 2);
  for (size_t index = 0; index < count; ++index) {
    eventColors_[index].setFill();
    NSBezierPath::bezierPathWithOvalInRect(NSMakeRect(x, DotBottom, DotSize, DotSize)).fill();
    x += DotStep;
  }
}

void CalendarCellLabel_Time::drawRect(NSRect) {
  // Fields draw at their upper edge.
  constexpr double LineHeight = 16;
  constexpr double AboveMiddle = 3;
  NSTextAttributes attributes;
  attributes.font = font();
  attributes.foregroundColor = textColor();
  attributes.alignment = alignment();
  NSRect line = bounds();
  line.origin.y = (line.size.height - LineHeight) / 2 + AboveMiddle;
  line.size.height = LineHeight;
  NSTextFieldCell::drawLine(stringValue(), line, attributes, userInterfaceLayoutDirection());
}
