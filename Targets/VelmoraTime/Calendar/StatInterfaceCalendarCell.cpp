#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendarCell.h"

#include <algorithm>
#include <utility>

#include "Platform/Foundation/Time/NSDate.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/VelmoraTime/Calendar/CalendarColors.h"
#include "Targets/VelmoraTime/Calendar/MonthDays.h"

namespace {

constexpr NSRect CellFrame = {{0, 0}, {35, 32}};
constexpr double RowWidth = 237;

}  // namespace

StatInterfaceCalendarCell::StatInterfaceCalendarCell()
    : view_(std::make_shared<StatInterfaceCalendarCellView_Time>(CellFrame)),
      label_(std::make_shared<CalendarCellLabel_Time>(CellFrame)) {
  label_->setAlignment(NSTextAlignment::Center);
  label_->setAutoresizingMask(NSViewWidthSizable);
  label_->setTextColor(NSColor::whiteColor());
  view_->addSubview(label_);
}

double StatInterfaceCalendarCell::endDate() const { return date_ + SecondsPerDay; }

void StatInterfaceCalendarCell::setDay(double date, int64_t weekday, int64_t type) {
  date_ = date;
  weekday_ = weekday;
  type_ = type;
}

void StatInterfaceCalendarCell::updateEvents() {
  std::vector<NSColor> colors;
  const EKCalendar* last = nullptr;
  for (const auto& event : events_) {
    // Thousands of events come from a few calendars.
    if (std::exchange(last, event->calendar().get()) == event->calendar().get()) continue;
    const auto color = colorOfCalendar(*event->calendar());
    if (color && std::ranges::find(colors, *color) == colors.end()) colors.push_back(*color);
  }
  view_->setEventColors(std::move(colors));
  view_->setDrawDot(!events_.empty());
}

void StatInterfaceCalendarCell::invalidateUpcomingEventItems() {
  for (const auto& item : upcomingEventItems_)
    item->setExists(false);
}

void StatInterfaceCalendarCell::removeUpcomingEventItems() {
  std::erase_if(upcomingEventItems_, [](const auto& item) { return !item->exists(); });
}

std::shared_ptr<StatInterfaceEventItem_Time> StatInterfaceCalendarCell::upcomingEventItemWithUUID(
    std::string_view uuid) {
  const auto known = std::ranges::find_if(upcomingEventItems_,
                                          [&](const auto& item) { return item->uuid() == uuid; });
  if (known != upcomingEventItems_.end()) return *known;
  auto item = std::make_shared<StatInterfaceEventItem_Time>();
  item->setUuid(uuid);
  NSSize size = item->view()->frame().size;
  size.width = RowWidth;
  item->view()->setFrameSize(size);
  upcomingEventItems_.push_back(item);
  return item;
}

std::string StatInterfaceCalendarCell::description() const {
  return "date = " + NSDate::dateWithTimeIntervalSince1970(date_).description() + ", events " +
         std::to_string(events_.size());
}
