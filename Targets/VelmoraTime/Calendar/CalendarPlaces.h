#pragma once

#include "Platform/EventKit/EKEventStore.h"

/// Where the settings say that calendars are: the folders of "Time_CalendarFolders", the usual ones
/// if it is not set, and the user's addresses of "Time_CalendarAddresses". Main thread only.
EKCalendarPlaces calendarPlacesFromSettings();
