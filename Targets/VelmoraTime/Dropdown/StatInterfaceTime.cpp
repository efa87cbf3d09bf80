#include "Targets/VelmoraTime/Dropdown/StatInterfaceTime.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <typeinfo>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Text/TypeName.h"
#include "Platform/Foundation/Time/NSCalendar.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Shared/Collectors/CityStatCollector.h"
#include "Targets/Shared/Dropdown/MenuItemHighlight.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Calendar/CalendarApplication.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Targets/VelmoraTime/Map/StatInterfaceLightMap.h"

namespace {

constexpr int64_t RowWidth = 225;
constexpr double SecondsBetweenDates = 60;

bool showsLargeRows() { return ZEVIntegerForKey("Time_DropdownCityLayout") == 1; }

std::shared_ptr<StatInterfaceTimeItem> makeClock(const CityRecord& city) {
  auto clock = std::make_shared<StatInterfaceTimeItem>();
  clock->setDetails(city);
  clock->menuitem()->setTitle("city");
  clock->loadLocale();
  clock->updateMode();
  clock->updateStaticInfo();
  return clock;
}

void displayAnew(const NSMenu& menu) {
  for (const auto& item : menu.itemArray()) {
    if (item->view()) item->view()->setNeedsDisplay(true);
    if (item->submenu()) displayAnew(*item->submenu());
  }
}

}  // namespace

StatInterfaceTime_Time::StatInterfaceTime_Time() {
  setMenu(createMenu());
  moon_.moonMenu()->setDelegate(this);
  loadCombinedRow();
  loadCalendar();
  dateTimer_ =
      NSTimer::scheduledTimerWithTimeInterval(SecondsBetweenDates, [this] { updateDate(); });
  rebuildMenu();
  updateDate();
  updateCalendar();
  moon_.updateCurrentPhase();
  // A faulty format must not keep the clock from starting.
  NSRunLoop::guarded([this] { updateMoonPhase(); });
  eventsObservation_ = NSNotificationCenter::defaultCenter().addObserver(
      "VelmoraEventsChanged", [this](const NSNotification&) { eventsChanged(); });
}

StatInterfaceTime_Time::~StatInterfaceTime_Time() {
  moon_.moonMenu()->setDelegate(nullptr);
  calendar_->setDelegate(nullptr);
}

void StatInterfaceTime_Time::loadCalendar() {
  calendar_ = std::make_shared<StatInterfaceCalendar_Time>();
  calendar_->loadControls();
  calendar_->prepareToDisplay();
  calendar_->loadCells();
  calendarContainer_ =
      StatInterfaceView_Time::containerWithFrame(StatInterfaceCalendar_Time::Frame);
  calendarContainer_->addSubview(calendar_);
  calendarItem_ = createMenuItemWithView(calendarContainer_);
  // Its parts have colours of their own, and act by themselves.
  calendarContainer_->setHighlightable(false);
  calendarItem_->setHasActingView(true);
  calendar_->setDelegate(this);
}

void StatInterfaceTime_Time::loadCombinedRow() {
  combinedDateValue_ = createLabelField(NSTextAlignment::Center, ZEVMakeRect(6, 0, 213, 20));
  const auto row = std::make_shared<StatInterfaceView_Time>(ZEVMakeRect(0, 0, RowWidth, 25));
  row->addSubview(combinedDateValue_);
  setCombinedItem(createMenuItemWithView(row));
}

// --- The clocks ---------------------------------------------------------------------------------

std::shared_ptr<StatInterfaceTimeItem> StatInterfaceTime_Time::itemWithIdentifier(
    int64_t identifier) const {
  const auto found = std::ranges::find(items_, identifier, &StatInterfaceTimeItem::identifier);
  return found != items_.end() ? *found : nullptr;
}

void StatInterfaceTime_Time::loadClocks() {
  for (const auto& clock : items_)
    clock->setExists(false);
  const PropertyList cities = ZEVObjectForKey("Time_Cities");
  const auto identifiers = cities.array() != nullptr ? *cities.array() : PropertyList::Array();
  int64_t index = 0;
  for (const PropertyList& identifier : identifiers) {
    auto& collector = CityStatCollector_Time::sharedCityStatCollector();
    const auto city = collector.cityWithIdentifier(identifier);
    if (!city) continue;
    auto clock = itemWithIdentifier(identifier.integerValue());
    if (!clock) clock = items_.emplace_back(makeClock(*city));
    clock->setExists(true);
    // Of a city that is listed twice the later place counts, and leaves a gap.
    clock->setIndex(index++);
    clock->lightMap()->cityLayer()->setPlaces(mapPlaces());
  }
  updateCityNames();
  removeInvalidClocks();
  sortClocks();
  rebuildMenu();
}

StatInterfaceLightMapLayer_Time::Places StatInterfaceTime_Time::mapPlaces() {
  return [weak = weak_from_this()] {
    std::vector<LightMapPlace> places;
    const auto dropdown = std::static_pointer_cast<StatInterfaceTime_Time>(weak.lock());
    if (!dropdown) return places;
    for (const auto& clock : dropdown->items_) {
      places.push_back(
          {clock->identifier(), clock->longitudePercentage(), clock->latitudePercentage()});
    }
    return places;
  };
}

void StatInterfaceTime_Time::removeInvalidClocks() {
  std::erase_if(items_, [](const auto& clock) { return !clock->exists(); });
}

void StatInterfaceTime_Time::sortClocks() {
  std::ranges::sort(items_, [](const auto& a, const auto& b) { return a->sort(*b) < 0; });
}

void StatInterfaceTime_Time::updateCityNames() {
  const PropertyList setting = ZEVDictionaryForKey("Time_CityNames");
  const auto* names = setting.dictionary();
  if (names == nullptr) return;
  for (const auto& clock : items_) {
    const auto found = names->find(std::to_string(clock->identifier()));
    const std::string* name = found != names->end() ? found->second.string() : nullptr;
    clock->setName(name != nullptr ? std::optional(*name) : std::nullopt);
  }
}

void StatInterfaceTime_Time::updateCityMode() {
  for (const auto& clock : items_)
    clock->updateMode();
  rebuildMenu();
}

// --- The rows -----------------------------------------------------------------------------------

std::shared_ptr<NSMenuItem> StatInterfaceTime_Time::filler(const std::string& key,
                                                           int64_t height) const {
  return createFillerItem(menu().get(), key, RowWidth, height);
}

std::shared_ptr<NSMenuItem> StatInterfaceTime_Time::spacer(const std::string& key,
                                                           int64_t height) const {
  return createSpacerItem(menu().get(), key, RowWidth, height);
}

void StatInterfaceTime_Time::rebuildMenu() {
  const bool isLarge = showsLargeRows();
  MenuItems rows;
  const bool hasEvents = addCalendar(rows);
  addMoon(rows, isLarge, hasEvents);
  addClocks(rows, isLarge);
  rows.push_back(filler("filler-base", 5));
  rebuildMenuWithItems(rows);
}

/// Answers whether there are events.
bool StatInterfaceTime_Time::addCalendar(MenuItems& rows) const {
  if (!ZEVBoolForKey("Time_CalendarEnabled")) return false;
  const auto events = calendar_->upcomingEventsItems();
  const bool hasEvents = ZEVBoolForKey("Time_CalendarShowEvents") && !events.empty();
  rows.push_back(calendarItem_);
  rows.push_back(filler("filler-calendar", 2));
  if (!hasEvents) return false;
  rows.push_back(filler("filler-calendar-events", 2));
  rows.insert(rows.end(), events.begin(), events.end());
  return true;
}

void StatInterfaceTime_Time::addMoon(MenuItems& rows, bool isLarge, bool hasEvents) {
  constexpr int64_t SpacerHeight = 12;
  if (ZEVBoolForKey("Time_DropdownShowMoon")) {
    rows.push_back(hasEvents ? spacer("spacer-moon-before", SpacerHeight)
                             : filler("filler-moon-before", 3));
    rows.push_back(moon_.itemWithSubmenu(isLarge));
  } else if (!hasEvents) {
    rows.push_back(filler("filler-no-events-or-moon", 1));
  } else if (!items_.empty()) {
    rows.push_back(spacer("spacer-events-no-moon", SpacerHeight));
  }
}

void StatInterfaceTime_Time::addClocks(MenuItems& rows, bool isLarge) const {
  for (size_t position = 0; position < items_.size(); ++position) {
    if (!isLarge) {
      rows.push_back(items_[position]->menuitemSimple());
      continue;
    }
    if (position > 0) rows.push_back(filler("filler-city-" + std::to_string(position), 2));
    rows.push_back(items_[position]->menuitem());
  }
}

void StatInterfaceTime_Time::updateCalendar() {
  const auto collector = CalendarStatCollector::sharedCalendarCollector();
  // Switched on while it is open.
  if (isEnabled()) collector->checkCalendarAccess();
  if (!collector->isEnabled()) calendar_->forgetEvents();
  calendar_->setShowWeeks(ZEVBoolForKey("Time_CalendarShowWeeks"));
  calendar_->updateDate();
  calendar_->updateHeaders();
}

void StatInterfaceTime_Time::eventsChanged() {
  // A closed one asks when it opens.
  if (isEnabled()) calendar_->updateCalendar();
}

void StatInterfaceTime_Time::cancelTracking() { menu()->cancelTracking(); }

void StatInterfaceTime_Time::themeChange() {
  updateCalendar();
  displayAnew(*menu());
}

// --- Time ---------------------------------------------------------------------------------------

void StatInterfaceTime_Time::updateClocks() {
  if (!isEnabled()) return;
  // At midnight itself both days are today: the month goes on with the tick after it.
  constexpr double Moment = 1e-6;
  updateDay(NSDate::date().dateByAddingTimeInterval(-Moment));
  // A format that one clock cannot show must not keep the others from their light and their names.
  for (const auto& clock : items_)
    NSRunLoop::guarded([&] { clock->update(); });
}

void StatInterfaceTime_Time::updateDay(const NSDate& now) {
  const int64_t day = NSCalendar::currentCalendar().component(NSCalendarUnitDay, now);
  if (day == calendar_->lastDay()) return;
  calendar_->setLastDay(day);
  calendar_->updateDate();
  calendar_->updateUpcomingEvents();
  rebuildMenu();
}

void StatInterfaceTime_Time::updateDate() {
  NSDateFormatter formatter = dateFormatterOfLanguageSetting();
  formatter.setDateFormat("d MMMM yyyy");
  combinedDateValue_->setStringValue(formatter.stringFromDate(NSDate::date()));
}

void StatInterfaceTime_Time::forceUpdate() {
  try {
    updateDay(NSDate::date());
    calendar_->prepareToDisplay();
    calendar_->setOpensCalendar(hasCalendarApplication());
    calendar_->updateEventsIfNeeded();
    calendar_->updateUpcomingEvents();
    updateEvents();
    updateDate();
    updateClocks();
    for (const auto& clock : items_)
      clock->updateSoonAndMoon();
    moon_.updateCurrentPhase();
  } catch (const std::exception& exception) {
    NSLog(typeName(typeid(exception)) + " - " + exception.what());
  }
}

void StatInterfaceTime_Time::stopTimers() {
  dateTimer_.reset();
  moon_.stopTimers();
}

void StatInterfaceTime_Time::removeNotifications() {
  calendar_->setDelegate(nullptr);
  eventsObservation_.reset();
}

// --- Open and closed ----------------------------------------------------------------------------

void StatInterfaceTime_Time::stateChanged(bool isOpen) {
  menu()->setVisible(isOpen);
  NSNotificationCenter::defaultCenter().postNotification("ZEVMenuStateChanged");
  setEnabled(isOpen);
}

void StatInterfaceTime_Time::menuWillOpen(NSMenu& opened) {
  if (&opened != menu().get()) return;
  stateChanged(true);
  CalendarStatCollector::sharedCalendarCollector()->checkCalendarAccess();
  forceUpdate();
}

void StatInterfaceTime_Time::menuDidClose(NSMenu& closed) {
  menuWillHighlightItem(closed, nullptr);
  if (&closed == menu().get()) stateChanged(false);
}

void StatInterfaceTime_Time::menuWillHighlightItem(NSMenu& highlighted, NSMenuItem* item) {
  highlightMenuItem(highlighted, item);
}
