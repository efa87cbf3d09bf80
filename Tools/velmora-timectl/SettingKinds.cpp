#include "Tools/velmora-timectl/SettingKinds.h"

#include <algorithm>

#include "Targets/Shared/ZEVColorText.h"
#include "Targets/Shared/ZEVPreferences.h"

namespace {

bool isText(const PropertyList& value) { return value.string() != nullptr; }
bool isDictionary(const PropertyList& value) { return value.dictionary() != nullptr; }

template <bool (*Fits)(const PropertyList&)>
bool isListOf(const PropertyList& value) {
  return value.array() != nullptr &&
         std::all_of(value.array()->begin(), value.array()->end(), Fits);
}

bool isNumber(const PropertyList& value) { return value.isNumber(); }
bool isColor(const PropertyList& value) { return colorFromString(value).has_value(); }

bool isNamesByCity(const PropertyList& value) {
  return isDictionary(value) && std::all_of(value.dictionary()->begin(), value.dictionary()->end(),
                                            [](const auto& entry) { return isText(entry.second); });
}

constexpr SettingKind Number = {"a number", "13", isNumber};
constexpr SettingKind Text = {"a text", "'\"1,2\"'", isText};
constexpr SettingKind Color = {"a colour, red, green, blue and alpha from 0 to 1",
                               "'\"0.11 0.11 0.11 1.0\"'", isColor};
constexpr SettingKind Texts = {"a list of texts", "'[\"HH\",\":\",\"mm\"]'", isListOf<isText>};
constexpr SettingKind Dictionaries = {"a list of dictionaries", "'[{\"level\":10}]'",
                                      isListOf<isDictionary>};
constexpr SettingKind CityNames = {"a dictionary of texts by city identifier",
                                   "'{\"2643743\":\"Home\"}'", isNamesByCity};
constexpr SettingKind Language = {"a text", "'\"de\"'", isText};

SettingKind kindOfDefault(const PropertyList& value) {
  if (value.isNumber()) return Number;
  if (isColor(value)) return Color;
  if (isListOf<isText>(value)) return Texts;
  return value.array() != nullptr ? Dictionaries : Text;
}

}  // namespace

std::optional<SettingKind> kindOfSetting(std::string_view key) {
  if (key == "language") return Language;
  if (key == "CombinedMenubarDisplayMode") return Text;
  if (key == "Time_CityNames") return CityNames;
  const auto& defaults = ZEVPreferences_Time::sharedPreferences()->defaults();
  const auto known = defaults.find(key);
  if (known == defaults.end()) return std::nullopt;
  return kindOfDefault(known->second);
}
