#pragma once

/// Whether the desktop has an application for calendars.
bool hasCalendarApplication();

/// Starts it, a moment later, when what was open on the screen has gone.
void openCalendarApplication();
