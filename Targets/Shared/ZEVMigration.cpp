#include "Targets/Shared/ZEVMigration.h"

#include "Platform/AppKit/Drawing/NSKeyedUnarchiver.h"
#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"
#include "Targets/Shared/ZEVColorText.h"
#include "Targets/Shared/ZEVMigrationKeys.h"

namespace {

constexpr std::string_view OldFile = "~/Library/Preferences/com.wenmark.velmora.extras.plist";

/// An identifier as the city map spells it; nothing for what is neither number nor text.
std::optional<std::string> cityKey(const PropertyList& identifier) {
  if (identifier.string() != nullptr) return *identifier.string();
  if (identifier.isNumber()) return std::to_string(identifier.integerValue());
  return std::nullopt;
}

/// The value to carry over; nothing drops the setting.
std::optional<PropertyList> migratedValue(const PropertyList& value) {
  if (value.data() == nullptr) return value;
  const auto color = unarchiveObjectWithData(*value.data());
  if (!color) return std::nullopt;
  return stringFromColor(*color);
}

}  // namespace

bool oldSettingsExist() {
  std::error_code error;
  return std::filesystem::exists(resolvedPath(OldFile), error);
}

PropertyList migratedCities(const PropertyList& oldCities, const NSBundle& bundle) {
  PropertyList::Array cities;
  const auto map = propertyListWithContentsOfFile(bundle.bundlePath() / "citymap.plist");
  if (!map || map->dictionary() == nullptr || oldCities.array() == nullptr) return cities;
  for (const PropertyList& identifier : *oldCities.array()) {
    const auto key = cityKey(identifier);
    if (!key) continue;
    const auto found = map->dictionary()->find(*key);
    if (found != map->dictionary()->end()) cities.push_back(found->second);
  }
  return cities;
}

std::vector<MigratedSetting> migratedSettings(const NSBundle& bundle) {
  const auto file = propertyListWithContentsOfFile(resolvedPath(OldFile));
  if (!file || file->dictionary() == nullptr) return {};
  std::vector<MigratedSetting> settings;
  for (const auto& [oldKey, oldValue] : *file->dictionary()) {
    if (isSkippedInMigration(oldKey)) continue;
    auto value = migratedValue(oldKey == "cities" ? migratedCities(oldValue, bundle) : oldValue);
    if (value) settings.push_back({std::string(migratedKey(oldKey)), std::move(*value)});
  }
  return settings;
}
