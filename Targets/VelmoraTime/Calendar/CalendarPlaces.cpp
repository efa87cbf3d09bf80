#include "Targets/VelmoraTime/Calendar/CalendarPlaces.h"

#include "Targets/Shared/ZEVPreferences.h"

namespace {

std::optional<std::vector<std::string>> textsOfSetting(const char* key) {
  const PropertyList setting = ZEVObjectForKey(key);
  if (setting.array() == nullptr) return std::nullopt;
  std::vector<std::string> texts;
  for (const PropertyList& text : *setting.array()) {
    if (text.string() != nullptr) texts.push_back(*text.string());
  }
  return texts;
}

}  // namespace

EKCalendarPlaces calendarPlacesFromSettings() {
  EKCalendarPlaces places;
  places.folders = textsOfSetting("Time_CalendarFolders");
  places.userAddresses =
      textsOfSetting("Time_CalendarAddresses").value_or(std::vector<std::string>());
  return places;
}
