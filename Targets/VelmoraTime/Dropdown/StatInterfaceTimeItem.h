#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/RunLoop/NSTimer.h"
#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Shared/Collectors/CityRecord.h"
#include "Targets/Shared/Dropdown/ZEVMenu.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"
#include "Targets/VelmoraTime/Classes/ClockElements.h"
#include "Targets/VelmoraTime/Classes/MoonData.h"
#include "Targets/VelmoraTime/Classes/SunData.h"
#include "Targets/VelmoraTime/Dropdown/CityLight.h"
#include "Targets/VelmoraTime/Dropdown/CityTimeText.h"

class StatInterfaceClockFace_Time;
class StatInterfaceLightMap_Time;
class SunDetailPanel;

/// One world clock: a city with the time there, in two rows of which the dropdown shows one, and
/// the submenu of that row. Whoever makes one calls `setDetails`, `loadLocale`, `updateMode` and
/// `updateStaticInfo`, in this order, before anything else. Main thread only.
class StatInterfaceTimeItem : public NSObject, public NSMenuDelegate {
 public:
  StatInterfaceTimeItem();
  ~StatInterfaceTimeItem() override;

  // The city.

  const CityRecord& details() const { return details_; }
  /// Takes the city's identifier, zone, place and name.
  void setDetails(const CityRecord& city);
  int64_t identifier() const { return details_.identifier; }
  /// By its name in the zone database; the record's, but where that zone has become another.
  const std::string& timezone() const { return timezone_; }
  /// Degrees, positive east and north.
  float longitude() const { return longitude_; }
  float latitude() const { return latitude_; }

  /// Shows a name of the user's in both rows; nothing brings the city's own back. The small row
  /// stays laid out as it is.
  void setName(const std::optional<std::string>& custom);

  /// Finds a locale for the zone's abbreviation, and the zone's present name.
  void loadLocale();
  /// Gives the submenu to the row that the setting "Time_DropdownCityLayout" selects.
  void updateMode();
  /// Works out the place on the map, and has the small row laid out for the city's own name.
  void updateStaticInfo();

  /// The city's place on a map of the whole Earth, from 0 to 1, from west to east and from north
  /// to south.
  double longitudePercentage() const { return longitudePercentage_; }
  double latitudePercentage() const { return latitudePercentage_; }

  // In the dropdown's list.

  /// Whether the city is still wanted, for a list that is brought up to date.
  bool exists() const { return exists_; }
  void setExists(bool exists) { exists_ = exists; }
  /// The position among the cities, from 0.
  int64_t index() const { return index_; }
  void setIndex(int64_t index) { index_ = index; }
  std::strong_ordering sort(const StatInterfaceTimeItem& other) const {
    return index_ <=> other.index_;
  }

  /// The large row, with the face, and the small one, which is laid out when it is asked for: a
  /// start should not have to load a font for rows that nobody sees.
  const std::shared_ptr<ZEVMenuItem_Time>& menuitem() const { return menuitem_; }
  const std::shared_ptr<ZEVMenuItem_Time>& menuitemSimple();
  const std::shared_ptr<ZEVMenu_Time>& submenu() const { return submenu_; }
  /// Of the submenu.
  const std::shared_ptr<StatInterfaceLightMap_Time>& lightMap() const { return lightMap_; }
  /// Made when it is first asked for.
  SunDetailPanel& sunPanel();
  const std::shared_ptr<StatInterfaceClockFace_Time>& face() const { return face_; }
  const std::shared_ptr<StatInterfaceTextField_Time>& nameValue() const { return nameValue_; }
  const std::shared_ptr<StatInterfaceTextField_Time>& timeValue() const { return timeValue_; }
  const std::shared_ptr<StatInterfaceTextFieldValue_Time>& nameValueSimple() const {
    return nameValueSimple_;
  }
  const std::shared_ptr<StatInterfaceTextFieldLabel_Time>& timeValueSimple() const {
    return timeValueSimple_;
  }

  // The time.

  /// The tick, once a second while the dropdown is open: texts, hands and light of the present
  /// moment. Works Sun and Moon out when the city's hour is another than at the last tick.
  void update();
  /// Works Sun and Moon of the present moment out, for an open submenu, too.
  void updateSoonAndMoon();
  /// Shows the records in the panel.
  void updateSunDisplay();
  /// Brings the submenu to the present moment.
  void updateSubmenu();
  /// Takes the light of a moment from the Sun's record.
  void updateLight(const NSDate& date);

  /// The time there at a moment, as a format list has it. An element that is a lone apostrophe
  /// raises `std::out_of_range`.
  std::string textOfElements(const ClockElements& elements, const NSDate& date);
  /// The time of day in words. `date` has the offset of the city's zone added to it already.
  std::string fuzzyClockWithDate(const NSDate& date) const;
  std::string nameForHour(int64_t hour) const;

  /// Whether the face is the one of the day, and how much of its dark picture it shows, from 0
  /// to 1.
  bool day() const { return day_; }
  float lightPercentage() const { return lightPercentage_; }
  /// Null until they are first worked out.
  const std::optional<SunData>& sunData() const { return sunData_; }
  const std::optional<MoonData>& moonData() const { return moonData_; }

  /// Follow the time in the submenu, each minute, while that is open. A closed one keeps no layers.
  void menuWillOpen(NSMenu& menu) override;
  void menuDidClose(NSMenu& menu) override;

  std::string description() const;

 private:
  void loadLargeRow();
  void loadSmallRow();
  void loadSubmenu();
  void layOutSmallRow(const std::string& ownName);
  void makeRecords();
  void updateAccessibleName(const NSDate& now);
  void showPresent();
  void updateMapDescription();

  /// The city's, or the system's if there is none of that name.
  NSTimeZone zone() const;
  CityClock clock();

  bool exists_ = false;
  bool day_ = false;
  float longitude_ = 0;
  float latitude_ = 0;
  float lightPercentage_ = 0;
  std::optional<NSLocale> localeDefault_;   ///< Of the setting "language".
  std::optional<NSLocale> localeTimezone_;  ///< For the zone's abbreviation.
  CityRecord details_;
  std::string timezone_;
  int64_t index_ = 0;
  std::shared_ptr<ZEVMenuItem_Time> menuitem_;
  std::shared_ptr<ZEVMenuItem_Time> menuitemSimple_;
  std::shared_ptr<StatInterfaceTextField_Time> nameValue_;
  std::shared_ptr<StatInterfaceTextField_Time> timeValue_;
  std::unique_ptr<NSTimer> timer_;
  std::shared_ptr<StatInterfaceClockFace_Time> face_;
  double longitudePercentage_ = 0;
  double latitudePercentage_ = 0;
  NSDateFormatter formatter_;
  std::optional<SunData> sunData_;
  std::optional<MoonData> moonData_;
  std::shared_ptr<StatInterfaceTextFieldValue_Time> nameValueSimple_;
  std::shared_ptr<StatInterfaceTextFieldLabel_Time> timeValueSimple_;
  std::optional<std::string> smallRowName_;  ///< For which the small row is still to be laid out.
  std::shared_ptr<ZEVMenu_Time> submenu_;
  std::shared_ptr<StatInterfaceLightMap_Time> lightMap_;
  std::unique_ptr<SunDetailPanel> sunPanel_;
  std::optional<int64_t> namedMinute_;  ///< Since 1970, that the accessible name tells.
};
