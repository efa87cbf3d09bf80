#include "Targets/VelmoraTime/Dropdown/StatInterfaceTimeItem.h"

#include <cmath>
#include <utility>

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/Dropdown/ZEVMenuItemUtilities.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/VelmoraTime/Classes/FuzzyClock.h"
#include "Targets/VelmoraTime/Classes/ZEVDateAndTimeUtilities.h"
#include "Targets/VelmoraTime/Dropdown/CityAccessibleName.h"
#include "Targets/VelmoraTime/Dropdown/StatInterfaceClockFace.h"
#include "Targets/VelmoraTime/Dropdown/SunDetailPanel.h"
#include "Targets/VelmoraTime/Map/LightMapDescription.h"
#include "Targets/VelmoraTime/Map/StatInterfaceLightMap.h"
#include "Targets/VelmoraTime/ZoneLocales.h"

namespace {

// In points, from the lower left corner.
constexpr NSRect LargeRow = {{0, 0}, {237, 40}};
constexpr NSRect LargeFace = {{10, 4}, {32, 32}};
constexpr NSRect LargeName = {{48, 20}, {167, 15}};
constexpr NSRect LargeTime = {{48, 5}, {167, 15}};
constexpr NSRect SmallRow = {{0, 0}, {237, 19}};
constexpr NSRect SmallName = {{8, 2}, {167, 15}};
constexpr NSRect SmallTime = {{97, 2}, {133, 15}};
constexpr NSRect SubmenuPanel = {{0, 0}, {320, 465}};
constexpr NSRect LightMap = {{0, 305}, {320, 160}};

constexpr double NameSize = 12;
/// Beside the name in the small row, and behind its time.
constexpr double NameMargin = 10;
constexpr double TimeMargin = 12;

constexpr double SubmenuInterval = 60;

}  // namespace

StatInterfaceTimeItem::StatInterfaceTimeItem() {
  formatter_.setCalendar(NSCalendar::gregorianCalendar());
  localeDefault_ = localeOfLanguageSetting();
  if (localeDefault_) formatter_.setLocale(*localeDefault_);
  loadLargeRow();
  loadSmallRow();
  loadSubmenu();
}

StatInterfaceTimeItem::~StatInterfaceTimeItem() { submenu_->setDelegate(nullptr); }

void StatInterfaceTimeItem::loadLargeRow() {
  const auto row = StatInterfaceView_Time::containerWithFrame(LargeRow);
  face_ = std::make_shared<StatInterfaceClockFace_Time>(LargeFace);
  nameValue_ = createValueField(NSTextAlignment::Left, LargeName);
  timeValue_ = createLabelField(NSTextAlignment::Left, LargeTime);
  row->addSubview(face_);
  row->addSubview(nameValue_);
  row->addSubview(timeValue_);
  menuitem_ = createMenuItemWithView(row);
  menuitem_->setTitle("city");
}

void StatInterfaceTimeItem::loadSmallRow() {
  const auto row = StatInterfaceView_Time::containerWithFrame(SmallRow);
  nameValueSimple_ = createValueField(NSTextAlignment::Left, SmallName);
  timeValueSimple_ = createLabelField(NSTextAlignment::Right, SmallTime);
  // Only the time takes what a wider menu adds: a long name would come to lie under it.
  nameValueSimple_->setAutoresizingMask(NSViewMaxXMargin);
  row->addSubview(nameValueSimple_);
  row->addSubview(timeValueSimple_);
  menuitemSimple_ = createMenuItemWithView(row);
}

void StatInterfaceTimeItem::loadSubmenu() {
  submenu_ = createMenu();
  submenu_->setDelegate(this);
  lightMap_ = std::make_shared<StatInterfaceLightMap_Time>(LightMap);
  const auto panel = std::make_shared<StatInterfaceView_Time>(SubmenuPanel);
  panel->addSubview(lightMap_);
  const auto item = std::make_shared<ZEVMenuItem_Time>();
  item->setView(panel);
  submenu_->addItem(item);
}

SunDetailPanel& StatInterfaceTimeItem::sunPanel() {
  if (!sunPanel_) {
    sunPanel_ = std::make_unique<SunDetailPanel>();
    submenu_->itemArray().front()->view()->addSubview(sunPanel_->view());
  }
  return *sunPanel_;
}

void StatInterfaceTimeItem::setDetails(const CityRecord& city) {
  details_ = city;
  timezone_ = city.timezone;
  longitude_ = static_cast<float>(city.longitude);
  latitude_ = static_cast<float>(city.latitude);
  setName(std::nullopt);
}

void StatInterfaceTimeItem::setName(const std::optional<std::string>& custom) {
  const bool hasCountry = details_.country && !details_.country->empty();
  const std::string full = hasCountry ? details_.city + ", " + *details_.country : details_.city;
  nameValue_->setStringValue(custom.value_or(full));
  nameValueSimple_->setStringValue(custom.value_or(details_.city));
  submenu_->itemArray().front()->setAccessibilityLabel(nameValueSimple_->stringValue());
  namedMinute_.reset();
}

void StatInterfaceTimeItem::loadLocale() {
  localeTimezone_ = localeForZoneAbbreviation(timezone_, formatter_);
}

void StatInterfaceTimeItem::updateMode() {
  const bool isLarge = ZEVIntegerForKey("Time_DropdownCityLayout") == 1;
  // Takes it from the other row.
  (isLarge ? menuitem_ : menuitemSimple_)->setSubmenu(submenu_);
}

void StatInterfaceTimeItem::updateStaticInfo() {
  formatter_.setTimeZone(zone());
  longitudePercentage_ = 0.5 + longitude_ / 360.0;
  latitudePercentage_ = 0.5 - static_cast<double>(latitude_ / 180.F);
  lightMap_->cityLayer()->setCurrentCity({identifier(), longitudePercentage_, latitudePercentage_});
  smallRowName_ = nameValueSimple_->stringValue();
}

const std::shared_ptr<ZEVMenuItem_Time>& StatInterfaceTimeItem::menuitemSimple() {
  if (smallRowName_) layOutSmallRow(*std::exchange(smallRowName_, std::nullopt));
  return menuitemSimple_;
}

void StatInterfaceTimeItem::layOutSmallRow(const std::string& ownName) {
  NSTextAttributes attributes;
  attributes.font = zevBoldFont(NameSize);
  NSRect name = nameValueSimple_->frame();
  name.size.width = static_cast<float>(sizeWithAttributes(ownName, attributes).width + NameMargin);
  nameValueSimple_->setFrame(name);
  NSRect time = timeValueSimple_->frame();
  time.origin.x = name.origin.x + name.size.width;
  time.size.width = menuitemSimple_->view()->frame().size.width - time.origin.x - TimeMargin;
  timeValueSimple_->setFrame(time);
}

NSTimeZone StatInterfaceTimeItem::zone() const {
  return NSTimeZone::timeZoneWithName(timezone_).value_or(NSTimeZone::defaultTimeZone());
}

CityClock StatInterfaceTimeItem::clock() {
  return {formatter_, zone(), localeDefault_, localeTimezone_};
}

void StatInterfaceTimeItem::update() {
  constexpr std::string_view Format = "Time_DropdownFormat";
  const NSDate now = NSDate::date();
  const std::string text =
      textOfElements(clockElementsFromSetting(ZEVObjectForKey(Format), Format), now);
  timeValue_->setStringValue(text);
  timeValueSimple_->setStringValue(text);

  NSCalendar calendar = NSCalendar::gregorianCalendar();
  calendar.setTimeZone(zone());
  const int64_t hour = calendar.component(NSCalendarUnitHour, now);
  if (face_->reading().hour != hour) updateSoonAndMoon();
  updateLight(now);
  face_->setReading({day_, lightPercentage_, hour, calendar.component(NSCalendarUnitMinute, now),
                     calendar.component(NSCalendarUnitSecond, now)});
  updateAccessibleName(now);
}

void StatInterfaceTimeItem::updateAccessibleName(const NSDate& now) {
  const auto minute = static_cast<int64_t>(std::floor(now.timeIntervalSince1970() / 60));
  if (namedMinute_ == minute) return;
  namedMinute_ = minute;
  const std::string name = cityAccessibleName(nameValueSimple_->stringValue(), clock(), now);
  menuitem_->setAccessibilityLabel(name);
  menuitemSimple_->setAccessibilityLabel(name);
}

void StatInterfaceTimeItem::makeRecords() {
  const NSDate now = NSDate::date();
  sunData_ = calculateSunRiseAndSet(now, zone(), longitude_, latitude_);
  moonData_ = calculateMoonRiseAndSet(now, zone(), longitude_, latitude_);
}

void StatInterfaceTimeItem::updateSoonAndMoon() {
  makeRecords();
  const bool isSubmenuOpen = timer_ != nullptr;
  if (isSubmenuOpen) showPresent();
}

void StatInterfaceTimeItem::updateSunDisplay() {
  formatter_.setTimeZone(zone());
  sunPanel().update(sunData_.value_or(SunData()), moonData_.value_or(MoonData()), formatter_);
}

void StatInterfaceTimeItem::updateSubmenu() {
  makeRecords();
  showPresent();
}

void StatInterfaceTimeItem::showPresent() {
  updateSunDisplay();
  updateMapDescription();
  lightMap_->update();
}

void StatInterfaceTimeItem::updateMapDescription() {
  constexpr double SunriseAltitude = -0.833;
  const auto altitude = sunData_->find("altitude-now");
  const bool isDay = altitude != sunData_->end() && altitude->second > SunriseAltitude;
  lightMap_->setAccessibilityLabel(
      lightMapDescription(NSDate::date(), nameValueSimple_->stringValue(), isDay));
}

void StatInterfaceTimeItem::updateLight(const NSDate& date) {
  const CityLight light = lightOfCity(sunData_.value_or(SunData()), date.timeIntervalSince1970());
  day_ = light.day;
  lightPercentage_ = light.darkShare;
}

std::string StatInterfaceTimeItem::textOfElements(const ClockElements& elements,
                                                  const NSDate& date) {
  return cityTimeText(elements, clock(), date);
}

std::string StatInterfaceTimeItem::fuzzyClockWithDate(const NSDate& date) const {
  return fuzzyClockOfCity(date);
}

std::string StatInterfaceTimeItem::nameForHour(int64_t hour) const {
  return fuzzyHourNameOfCity(hour);
}

void StatInterfaceTimeItem::menuWillOpen(NSMenu&) {
  timer_ = NSTimer::scheduledTimerWithTimeInterval(SubmenuInterval, [this] { updateSubmenu(); });
  lightMap_->load();
  updateSubmenu();
}

void StatInterfaceTimeItem::menuDidClose(NSMenu&) {
  timer_.reset();
  lightMap_->unload();
}

std::string StatInterfaceTimeItem::description() const {
  return "name " + nameValue_->stringValue() + ", index " + std::to_string(index_);
}
