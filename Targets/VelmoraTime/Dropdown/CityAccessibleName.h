#pragma once

#include <string>
#include <string_view>

#include "Targets/VelmoraTime/Dropdown/CityTimeText.h"

/// What is read aloud for a city's row: "Tokyo, tomorrow 00:04, 8 hours ahead"; translated. The
/// time is that of the setting "Time_DropdownFormat", to the minute.
std::string cityAccessibleName(std::string_view city, const CityClock& clock, const NSDate& date);
