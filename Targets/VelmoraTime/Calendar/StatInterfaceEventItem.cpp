#include "Targets/VelmoraTime/Calendar/StatInterfaceEventItem.h"

#include <cmath>

#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/VelmoraTime/Calendar/CalendarApplication.h"
#include "Targets/VelmoraTime/Calendar/CalendarColors.h"

namespace {

constexpr NSRect RowFrame = {{0, 0}, {280, 19}};
constexpr NSRect DotFrame = {{8, 3}, {9, 9}};
constexpr NSRect NameFrame = {{18, 2}, {146, 15}};
constexpr NSRect TimeFrame = {{172, 2}, {100, 15}};

constexpr double TextsMargin = 15;
constexpr double TimePadding = 10;
constexpr double RightMargin = 8;

}  // namespace

StatInterfaceEventItem_Time::StatInterfaceEventItem_Time()
    : view_(StatInterfaceView_Time::containerWithFrame(RowFrame)),
      name_(createLabelField(NSTextAlignment::Left, NameFrame)),
      time_(createLabelField(NSTextAlignment::Right, TimeFrame)),
      menuitem_(createMenuItemWithView(view_)),
      dot_(std::make_shared<DotView_Time>(DotFrame)) {
  time_->setAutoresizingMask(NSViewMinXMargin);
  view_->addSubview(dot_);
  view_->addSubview(name_);
  view_->addSubview(time_);
}

void StatInterfaceEventItem_Time::setOpensCalendar(bool opens) {
  menuitem_->setAction(opens ? openCalendarApplication : NSMenuItem::Action());
}

void StatInterfaceEventItem_Time::updateWithEvent(const EKEvent& event, EventTimes& times) {
  const std::string title = event.title().value_or("");
  const std::string time = times.textInDay(event, day_);
  name_->setStringValue(title);
  time_->setStringValue(time);
  // The field's own text may be cut.
  menuitem_->setAccessibilityLabel(title + ", " + time);
  layOutTexts();
  dot_->setColor(colorOfCalendar(*event.calendar()).value_or(NSColor::blackColor()));
}

void StatInterfaceEventItem_Time::layOutTexts() {
  const double width = view_->frame().size.width;
  NSRect name = name_->frame();
  NSRect time = time_->frame();
  time.size.width = std::trunc(time_->textWidth()) + TimePadding;
  name.size.width = std::trunc(width - name.origin.x - TextsMargin) - time.size.width;
  time.origin.x = width - RightMargin - time.size.width;
  name_->setFrame(name);
  time_->setFrame(time);
}
