#pragma once

#include <string>

#include "Platform/EventKit/ICalendarValues_p.h"

/// An event from the text of its component. Throws `UnusableComponent`.
StoredEvent storedEvent(const std::string& component, ZoneNames& zones, RuleTable& rules);
