#include "Tools/velmora-timectl/SettingKinds.h"

#include <algorithm>
#include <charconv>

#include "Platform/Foundation/Text/NSString.h"
#include "Targets/Shared/ZEVColorText.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Targets/Shared/ZEVTranslations.h"
#include "Targets/VelmoraTime/Classes/ClockElements.h"

namespace {

bool isText(const PropertyList& value) { return value.string() != nullptr; }
bool isDictionary(const PropertyList& value) { return value.dictionary() != nullptr; }

template <bool (*Fits)(const PropertyList&)>
bool isListOf(const PropertyList& value) {
  return value.array() != nullptr &&
         std::all_of(value.array()->begin(), value.array()->end(), Fits);
}

bool isNumber(const PropertyList& value) { return value.isNumber(); }

bool isColorPart(std::string_view text) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end && number >= 0 && number <= 1;
}

/// Stricter than the clock, which makes a colour of every text of four pieces.
bool isColor(const PropertyList& value) {
  if (!colorFromString(value)) return false;
  const auto parts = componentsSeparatedByString(*value.string(), " ");
  return std::all_of(parts.begin(), parts.end(), isColorPart);
}

bool isFormatElement(const PropertyList& value) {
  return isText(value) && isClockElement(*value.string());
}

bool isLanguage(const PropertyList& value) {
  return isText(value) && ZEVTranslations_Time::hasLanguage(*value.string());
}

bool isNamesByCity(const PropertyList& value) {
  return isDictionary(value) && std::all_of(value.dictionary()->begin(), value.dictionary()->end(),
                                            [](const auto& entry) { return isText(entry.second); });
}

SettingKind text() { return {"a text", "'\"1,2\"'", isText}; }

SettingKind clockFormat() {
  return {"a list of texts (an apostrophe itself is \"'''\")", R"('["HH",":","mm"]')",
          isListOf<isFormatElement>};
}

SettingKind language() {
  std::string languages;
  for (const std::string& name : ZEVTranslations_Time::languages())
    languages += (languages.empty() ? "" : ", ") + name;
  return {"one of the languages " + languages, "'\"de\"'", isLanguage};
}

SettingKind kindOfDefault(const PropertyList& value) {
  if (value.isNumber()) return {"a number", "13", isNumber};
  if (isColor(value)) {
    return {"a colour, red, green, blue and alpha from 0 to 1", "'\"0.11 0.11 0.11 1.0\"'",
            isColor};
  }
  if (isListOf<isText>(value)) return {"a list of texts", "'[\"2643743\"]'", isListOf<isText>};
  if (value.array() == nullptr) return text();
  return {"a list of dictionaries", "'[{\"level\":10}]'", isListOf<isDictionary>};
}

}  // namespace

std::optional<SettingKind> kindOfSetting(std::string_view key) {
  if (key == "language") return language();
  if (key == "CombinedMenubarDisplayMode") return text();
  if (key == "Time_MenubarFormat" || key == "Time_DropdownFormat") return clockFormat();
  if (key == "Time_CalendarFolders") {
    return SettingKind{"a list of folders", R"('["~/calendars"]')", isListOf<isText>};
  }
  if (key == "Time_CalendarAddresses") {
    return SettingKind{"a list of your mail addresses", R"('["me@example.org"]')",
                       isListOf<isText>};
  }
  if (key == "Time_CityNames") {
    return SettingKind{"a dictionary of texts by city identifier", R"('{"2643743":"Home"}')",
                       isNamesByCity};
  }
  const auto& defaults = ZEVPreferences_Time::sharedPreferences()->defaults();
  const auto known = defaults.find(key);
  if (known == defaults.end()) return std::nullopt;
  return kindOfDefault(known->second);
}
