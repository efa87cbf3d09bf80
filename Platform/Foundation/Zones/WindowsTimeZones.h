#pragma once

#include <optional>
#include <string_view>

#include "Platform/Foundation/Zones/NSTimeZone.h"

/// The zone that Windows calls so ("W. Europe Standard Time"), by Unicode's table of the principal
/// zone for each of its names. Nothing if there is none.
std::optional<NSTimeZone> timeZoneWithWindowsName(std::string_view name);
