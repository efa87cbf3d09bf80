#pragma once

#include <string>

#include "Platform/EventKit/ICalendarValues_p.h"

/// An event from the text of its component. With a fault it is to be left out.
StoredEvent storedEvent(const std::string& component, ZoneNames& zones, RuleTable& rules,
                        ComponentFault& fault);
