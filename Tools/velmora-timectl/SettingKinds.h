#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// What kind of value a setting takes.
struct SettingKind {
  std::string description;   ///< "a list of texts".
  std::string_view example;  ///< As one writes it on the command line.
  bool (*fits)(const PropertyList& value);
};

/// The kind of a known setting: that of its default, or what is known of the key by itself. Nothing
/// for an unknown key.
std::optional<SettingKind> kindOfSetting(std::string_view key);
