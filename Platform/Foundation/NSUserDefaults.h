#pragma once

#include <optional>

#include "Platform/Foundation/PropertyList.h"

/// The user's settings beyond one program: what the session's environment says, and the domain
/// ".GlobalPreferences". Kept until synchronised.
class NSUserDefaults {
 public:
  static NSUserDefaults& standardUserDefaults();

  /// Every setting. "NSLanguages" lists the user's languages, most wanted first, from `LANGUAGE` or
  /// the locale of messages.
  const PropertyList::Dictionary& dictionaryRepresentation();

  /// Takes over what has changed outside: the next read asks anew.
  void synchronize() { values_.reset(); }

 private:
  std::optional<PropertyList::Dictionary> values_;
};
