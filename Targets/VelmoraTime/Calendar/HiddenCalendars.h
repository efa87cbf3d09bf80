#pragma once

#include <optional>
#include <string>
#include <vector>

// Calendars that the user has switched off: the list "MainWindow" of "DisabledCalendars" in the
// preferences domain "com.apple.iCal". Main thread only.

/// Makes the list where there is none: a missing one counts as changed each time.
void prepareHiddenCalendars();

/// The identifiers in the list, and those that the desktop's own calendar program hides; nothing if
/// there is no list.
std::optional<std::vector<std::string>> hiddenCalendars();
