#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Foundation/Files/NSBundle.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// One setting of the previous version under its present key.
struct MigratedSetting {
  std::string key;
  PropertyList value;
};

/// The settings of the previous version's file, in the order of their old keys. Colours, which were
/// archived as data, are in their present text form; other data is left behind. Nothing if the file
/// cannot be read. `bundle` holds the map of city identifiers.
std::vector<MigratedSetting> migratedSettings(const NSBundle& bundle);

/// Whether there is a file of the previous version.
bool oldSettingsExist();

/// The present identifiers of a list of old ones; those without one are dropped. Never null.
PropertyList migratedCities(const PropertyList& oldCities, const NSBundle& bundle);
