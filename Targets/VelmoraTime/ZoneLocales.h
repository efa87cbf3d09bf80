#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"

/// The locale of the people who live in a zone, for its short names; "" if none is listed.
std::string_view localeOfZone(std::string_view zone);

/// The locale in which the zone's abbreviation is to be written where `formatter`, under its own
/// locale, has only an offset for it at the present moment. Nothing if it has a name, or if the
/// zone is not listed. Leaves the formatter with that zone and the format "zzz". Montreal's zone
/// has become Toronto's: `zone` is changed to that.
std::optional<NSLocale> localeForZoneAbbreviation(std::string& zone, NSDateFormatter& formatter);
