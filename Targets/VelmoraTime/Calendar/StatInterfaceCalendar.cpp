#include "Targets/VelmoraTime/Calendar/StatInterfaceCalendar.h"

#include <algorithm>

#include "Platform/AppKit/Events/NSApplication.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Time/NSCalendar.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/ZEVImageCache.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Calendar/CalendarApplication.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"

namespace {

// From the upper left corner.
constexpr NSRect ControlsFrame = {{0, 0}, {280, 54}};
constexpr NSRect MonthNameFrame = {{60, 23}, {160, 20}};
constexpr NSRect CalendarButtonFrame = {{11, 23}, {20, 20}};
constexpr NSRect PreviousButtonFrame = {{229, 23}, {20, 20}};
constexpr NSRect NextButtonFrame = {{252, 23}, {20, 20}};
constexpr NSRect ShadowFrame = {{0, 236}, {280, 10}};
/// A click on the month's name, or above it, leads back to today.
constexpr NSRect TodayArea = {{60, 0}, {160, 40}};
constexpr double HeaderTop = 40;
constexpr double HeaderHeight = 16;
constexpr double DaysTop = 54;
constexpr double RowHeight = 32;
constexpr double NarrowColumn = 35;  ///< Beside week numbers.
constexpr double WideColumn = 40;

constexpr double TitleSize = 15;
constexpr double WeekdaySize = 10;
constexpr double DaySize = 13;

/// Of the numbers: with a row of dots below them, and without.
constexpr double OriginAboveDots = 0;
constexpr double OriginWithoutDots = -3;

constexpr size_t Columns = MonthDays::Columns;

std::shared_ptr<StatInterfaceTextField_Time> whiteField(NSRect frame, double size) {
  auto field = std::make_shared<StatInterfaceTextField_Time>(frame);
  field->setFont(zevNormalFont(size));
  field->setTextColor(NSColor::whiteColor());
  field->setAlignment(NSTextAlignment::Center);
  return field;
}

/// A formatter of wall-clock seconds.
NSDateFormatter universalFormatter() {
  NSDateFormatter formatter = dateFormatterOfLanguageSetting();
  formatter.setCalendar(NSCalendar::gregorianCalendar());
  formatter.setTimeZone(*NSTimeZone::timeZoneWithAbbreviation("UTC"));
  return formatter;
}

NSColor weekLabelColor() {
  return dropdownIsDark() ? NSColor::colorWithDeviceRed(0.447, 0.611, 0.858, 1)
                          : NSColor::colorWithDeviceRed(0.345, 0.47, 0.658, 1);
}

NSColor dayLabelColor(int64_t type) {
  if (type != DayOfOtherMonthType || dropdownRaisesContrast()) return dropdownValueColor();
  return NSColor::colorWithDeviceWhite(dropdownIsDark() ? 0.58 : 0.49, 1);
}

}  // namespace

StatInterfaceCalendar_Time::StatInterfaceCalendar_Time()
    : StatInterfaceFlippedView_Time(Frame),
      monthFormatter_(universalFormatter()),
      dayFormatter_(universalFormatter()) {
  monthFormatter_.setDateFormat("LLLL yyyy");
  dayFormatter_.setDateStyle(NSDateFormatterStyle::Full);
}

// --- Loading and layout -------------------------------------------------------------------------

std::shared_ptr<CalendarButton_Time> StatInterfaceCalendar_Time::addButton(
    NSRect frame, const CalendarButton_Time::Pictures& pictures, const std::string& name,
    void (StatInterfaceCalendar_Time::*action)()) {
  auto button = std::make_shared<CalendarButton_Time>(frame, pictures, name);
  button->setTapaction(
      WENTargetItem_Time(weak_from_this(), [this, action](NSObject*) { (this->*action)(); }));
  addSubview(button);
  return button;
}

void StatInterfaceCalendar_Time::loadControls() {
  selectedMonth_ = NoDay;
  addSubview(std::make_shared<CalendarHeaderView_Time>(ControlsFrame));
  monthName_ = whiteField(MonthNameFrame, TitleSize);
  addSubview(monthName_);
  // An arrow points to where its button stands.
  const bool isMirrored = NSApplication::sharedApplication().userInterfaceLayoutDirection() ==
                          NSUserInterfaceLayoutDirection::RightToLeft;
  constexpr CalendarButton_Time::Pictures Left = {"stats-calendar-arrow-left",
                                                  "stats-calendar-arrow-left-down"};
  constexpr CalendarButton_Time::Pictures Right = {"stats-calendar-arrow-right",
                                                   "stats-calendar-arrow-right-down"};
  calendarButton_ = addButton(
      CalendarButtonFrame, {"stats-calendar-opencal", "stats-calendar-opencal-down"},
      WENLocalizedString("Open calendar", "", "time"), &StatInterfaceCalendar_Time::openCalendar);
  calendarButton_->setHidden(true);
  addButton(PreviousButtonFrame, isMirrored ? Right : Left,
            WENLocalizedString("Previous month", "", "time"),
            &StatInterfaceCalendar_Time::previousMonth);
  addButton(NextButtonFrame, isMirrored ? Left : Right,
            WENLocalizedString("Next month", "", "time"), &StatInterfaceCalendar_Time::nextMonth);
}

void StatInterfaceCalendar_Time::addCell(StatInterfaceCalendarCell& cell) {
  cell.label()->setFont(zevLightFont(DaySize));
  addSubview(cell.view());
}

void StatInterfaceCalendar_Time::loadCells() {
  selectedDay_ = NoDay;
  cells_.resize(MonthDays::Count);
  for (StatInterfaceCalendarCell& cell : cells_) {
    cell.view()->accessibleName = [this, &cell] { return accessibleNameOfDay(cell); };
    cell.view()->onKeyDown = [this](const NSEvent& event) { return cellKeyDown(event); };
    cell.view()->onPress = [this, &cell] { chooseDay(cell.date()); };
    addCell(cell);
  }
  weekCells_.resize(MonthDays::Rows);
  for (StatInterfaceCalendarCell& cell : weekCells_) {
    cell.setType(WeekNumberType);
    addCell(cell);
  }
  headerCells_.resize(1 + Columns);
  for (auto& cell : headerCells_) {
    cell = whiteField(NSZeroRect, WeekdaySize);
    addSubview(cell);
  }
  headerCells_.front()->setStringValue(WENLocalizedString("WK", "", "time"));
  addSubview(std::make_shared<CalendarShadowView_Time>(ShadowFrame));
  layOut();
  updateHeaders();
}

void StatInterfaceCalendar_Time::setShowWeeks(bool showWeeks) {
  showWeeks_ = showWeeks;
  layOut();
}

void StatInterfaceCalendar_Time::layOut() {
  const double width = showWeeks_ ? NarrowColumn : WideColumn;
  const double left = showWeeks_ ? NarrowColumn : 0;
  for (size_t index = 0; index < cells_.size(); ++index) {
    const size_t row = index / Columns;
    const size_t column = index % Columns;
    cells_[index].view()->setFrame(NSMakeRect(left + width * static_cast<double>(column),
                                              DaysTop + RowHeight * static_cast<double>(row), width,
                                              RowHeight));
  }
  for (size_t row = 0; row < weekCells_.size(); ++row) {
    weekCells_[row].view()->setFrame(
        NSMakeRect(0, DaysTop + RowHeight * static_cast<double>(row), NarrowColumn, RowHeight));
    weekCells_[row].view()->setHidden(!showWeeks_);
  }
  for (size_t index = 0; index < headerCells_.size(); ++index) {
    const double column = static_cast<double>(index) - 1;
    headerCells_[index]->setFrame(
        NSMakeRect(left + width * column, HeaderTop, width, HeaderHeight));
  }
  // It stands outside without week numbers, and is not to be read aloud either.
  headerCells_.front()->setHidden(!showWeeks_);
}

void StatInterfaceCalendar_Time::drawRect(NSRect) {
  const bool isDark = dropdownIsDark();
  const auto draw = [](const char* name, double x) {
    if (const auto image = ZEVImageNamed(name)) image->drawAtPoint({x, 0});
  };
  if (showWeeks_) {
    draw(isDark ? "stats-calendar-weeks-dark" : "stats-calendar-weeks", 0);
    return;
  }
  // The picture is narrower than the month, and its rule at the foot goes from edge to edge.
  for (const double x : {0.0, 34.0})
    draw(isDark ? "stats-calendar-dark" : "stats-calendar", x);
}

// --- The month ----------------------------------------------------------------------------------

int StatInterfaceCalendar_Time::firstWeekday() const {
  return firstWeekday_ ? *firstWeekday_ : NSCalendar::autoupdatingCurrentCalendar().firstWeekday();
}

double StatInterfaceCalendar_Time::referenceDate() const {
  return selectedMonth_ != NoDay ? selectedMonth_ : wallClockNow();
}

void StatInterfaceCalendar_Time::updateCalendar() {
  const MonthDays month = daysOfMonth(referenceDate(), wallClockNow(), firstWeekday());
  const bool showsEvents = ZEVBoolForKey("Time_CalendarShowEvents");
  const double labelOrigin = showsEvents ? OriginAboveDots : OriginWithoutDots;
  currentDay_ = month.currentDay;
  for (size_t index = 0; index < cells_.size(); ++index) {
    const MonthDay& day = month.days[index];
    StatInterfaceCalendarCell& cell = cells_[index];
    cell.label()->setStringValue(std::to_string(day.day));
    cell.setDay(day.date, day.weekday, day.type);
    cell.setToday(day.isToday);
    cell.setTomorrow(day.isTomorrow);
  }
  updateWeeks();
  updateColors();
  if (month.start() != monthStartTime_) needToUpdateEvents_ = true;
  monthStartTime_ = month.start();
  monthEndTime_ = monthStartTime_ + MonthDays::Length;
  if (showsEvents) updateEventsIfNeeded();
  for (const auto* cells : {&cells_, &weekCells_}) {
    for (const StatInterfaceCalendarCell& cell : *cells)
      cell.label()->setFrameOrigin({cell.label()->frame().origin.x, labelOrigin});
  }
}

void StatInterfaceCalendar_Time::updateWeeks() {
  constexpr int64_t Monday = 2;
  size_t column = 0;
  if (ZEVIntegerForKey("Time_WeekNumberFormat") == 1) {
    while (column + 1 < Columns && cells_[column].weekday() != Monday)
      ++column;
  }
  auto& utilities = ZEVDateAndTimeUtilities::sharedUtilities();
  for (size_t row = 0; row < weekCells_.size(); ++row)
    weekCells_[row].label()->setStringValue(utilities.week(cells_[row * Columns + column].date()));
}

void StatInterfaceCalendar_Time::updateHeaders() {
  const auto symbols = monthFormatter_.veryShortWeekdaySymbols();
  if (symbols.size() != Columns) return;
  const auto first = static_cast<size_t>(firstWeekday() - 1);
  for (size_t column = 0; column < Columns; ++column) {
    headerCells_[1 + column]->setStringValue(uppercaseString(symbols[(first + column) % Columns]));
  }
}

void StatInterfaceCalendar_Time::updateMonth() {
  monthName_->setStringValue(
      monthFormatter_.stringFromDate(NSDate::dateWithTimeIntervalSince1970(referenceDate())));
  if (delegate_ != nullptr) delegate_->monthChanged();
}

void StatInterfaceCalendar_Time::updateDate() {
  updateCalendar();
  updateMonth();
}

void StatInterfaceCalendar_Time::updateColors() {
  StatInterfaceFlippedView_Time::updateColors();
  const NSFont light = zevLightFont(DaySize);
  const NSFont medium = zevMediumFont(DaySize);
  for (const StatInterfaceCalendarCell& cell : cells_) {
    const bool isSelected =
        (cell.isToday() && selectedDay_ == NoDay) || cell.date() == selectedDay_;
    cell.view()->setMode(cell.type());
    cell.view()->setToday(cell.isToday());
    cell.view()->setSelected(isSelected);
    cell.label()->setFont(isSelected ? medium : light);
    cell.label()->setTextColor(isSelected ? NSColor::whiteColor() : dayLabelColor(cell.type()));
  }
  for (const StatInterfaceCalendarCell& cell : weekCells_)
    cell.label()->setTextColor(weekLabelColor());
  updateKeyboardCell();
}

// --- Moving and choosing ------------------------------------------------------------------------

void StatInterfaceCalendar_Time::setSelectedMonth(std::optional<double> day) {
  const double month = day ? firstOfMonth(*day) : NoDay;
  selectedMonth_ = month == firstOfMonth(wallClockNow()) ? NoDay : month;
  updateDate();
  setNeedsDisplay(true);
}

void StatInterfaceCalendar_Time::moveMonths(int64_t months) {
  setSelectedMonth(monthsLater(firstOfMonth(referenceDate()), months));
}

void StatInterfaceCalendar_Time::selectMonth(bool forward) { moveMonths(forward ? 1 : -1); }

void StatInterfaceCalendar_Time::selectYear(bool forward) { moveMonths(forward ? 12 : -12); }

void StatInterfaceCalendar_Time::previousMonth() {
  const NSEvent* event = NSApplication::sharedApplication().currentEvent();
  needToUpdateEvents_ = true;
  const bool byYear = event != nullptr && (event->modifierFlags & NSEventModifierFlagShift) != 0;
  byYear ? selectYear(false) : selectMonth(false);
}

void StatInterfaceCalendar_Time::nextMonth() {
  const NSEvent* event = NSApplication::sharedApplication().currentEvent();
  needToUpdateEvents_ = true;
  const bool byYear = event != nullptr && (event->modifierFlags & NSEventModifierFlagShift) != 0;
  byYear ? selectYear(true) : selectMonth(true);
}

bool StatInterfaceCalendar_Time::isTodaySelected() const {
  return selectedDay_ == NoDay || selectedDay_ == currentDay_;
}

void StatInterfaceCalendar_Time::setSelectedDay(double day) {
  selectedDay_ = day == currentDay_ ? NoDay : day;
  updateColors();
}

void StatInterfaceCalendar_Time::chooseDay(double day) {
  keyboardDay_ = day;
  setSelectedDay(day);
  setNeedsDisplay(true);
  updateUpcomingEvents();
  if (delegate_ != nullptr) delegate_->updateEvents();
}

void StatInterfaceCalendar_Time::selectToday() {
  selectedDay_ = NoDay;
  keyboardDay_ = NoDay;
  needToUpdateEvents_ = true;
  setSelectedMonth(std::nullopt);
}

void StatInterfaceCalendar_Time::mouseDown(const NSEvent& event) {
  const NSPoint point = convertPointFromView(event.locationInWindow, nullptr);
  const auto hit = std::ranges::find_if(cells_, [&](const StatInterfaceCalendarCell& cell) {
    return NSPointInRect(point, cell.view()->placedFrame());
  });
  if (hit != cells_.end()) chooseDay(hit->date());
  if (NSPointInRect(point, TodayArea)) selectToday();
}

void StatInterfaceCalendar_Time::openCalendar() {
  if (delegate_ != nullptr) delegate_->cancelTracking();
  openCalendarApplication();
}
