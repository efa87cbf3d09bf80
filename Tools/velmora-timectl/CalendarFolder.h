#pragma once

#include "Tools/velmora-timectl/Arguments.h"

constexpr OptionSpec CalendarFolderOption = {"--calendar-dir", "DIR",
                                             "the folder of calendars, instead of the user's"};

/// Has the calendars of this run come from the folder that the option names, and from nowhere else;
/// without the option, from where the settings say. `me` are addresses of the user. Raises
/// `CommandFailure` for a folder that cannot be read.
void useCalendars(const Arguments& arguments, const std::vector<std::string>& me = {});
