#pragma once

#include <optional>
#include <string_view>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// The user's settings beyond one program: what the session's environment says, and the domain
/// ".GlobalPreferences". Kept until synchronised.
class NSUserDefaults {
 public:
  static NSUserDefaults& standardUserDefaults();

  /// Every setting. "NSLanguages" lists the user's languages, most wanted first, from `LANGUAGE` or
  /// the locale of messages.
  const PropertyList::Dictionary& dictionaryRepresentation();

  /// One of them; null if there is none. "com.apple.preferences.timezone.selected_city", where it
  /// is not set, has the "Latitude" and "Longitude" of the system zone's principal city.
  PropertyList objectForKey(std::string_view key);

  /// Takes over what has changed outside: the next read asks anew.
  void synchronize() {
    values_.reset();
    zoneCity_.reset();
  }

 private:
  std::optional<PropertyList::Dictionary> values_;
  std::optional<PropertyList> zoneCity_;
};
