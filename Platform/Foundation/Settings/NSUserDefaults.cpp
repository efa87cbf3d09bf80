#include "Platform/Foundation/Settings/NSUserDefaults.h"

#include <cstdlib>

#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/SharedInstance.h"
#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Text/NSString.h"
#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Platform/Foundation/Zones/TimeZonePlace.h"

namespace {

PropertyList::Array preferredLanguages() {
  PropertyList::Array languages;
  if (const char* list = std::getenv("LANGUAGE"); list != nullptr) {
    for (const auto& language : componentsSeparatedByString(list, ":")) {
      if (!language.empty()) languages.emplace_back(localeIdentifierFromEnvironment(language));
    }
  }
  if (languages.empty()) {
    // Behind a language without data comes the one in which its dates are written.
    const std::string language = NSLocale::environmentIdentifier("LC_MESSAGES");
    const std::string known = NSLocale::localeWithLocaleIdentifier(language).identifier();
    languages.emplace_back(language);
    if (known != language) languages.emplace_back(known);
  }
  return languages;
}

constexpr std::string_view SelectedCity = "com.apple.preferences.timezone.selected_city";

PropertyList cityOfSystemZone() {
  const auto place = placeOfTimeZone(NSTimeZone::systemTimeZone().name());
  if (!place) return {};
  return PropertyList::Dictionary{{"Latitude", place->latitude}, {"Longitude", place->longitude}};
}

}  // namespace

NSUserDefaults& NSUserDefaults::standardUserDefaults() {
  static SharedInstance<NSUserDefaults> defaults;
  return defaults.get();
}

const PropertyList::Dictionary& NSUserDefaults::dictionaryRepresentation() {
  if (!values_) {
    values_ = CFPreferencesCopyAllValues(".GlobalPreferences");
    values_->insert_or_assign("NSLanguages", preferredLanguages());
  }
  return *values_;
}

PropertyList NSUserDefaults::objectForKey(std::string_view key) {
  const auto& values = dictionaryRepresentation();
  if (const auto found = values.find(key); found != values.end()) return found->second;
  if (key != SelectedCity) return {};
  // Looked up when it is asked for: only a clock with a Moon wants to know.
  if (!zoneCity_) zoneCity_ = cityOfSystemZone();
  return *zoneCity_;
}
