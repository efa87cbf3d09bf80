#pragma once

#include <optional>

#include "Platform/AppKit/Events/NSApplication.h"
#include "Platform/AppKit/Events/NSEvent.h"

/// Where a key leads from a day, both in wall-clock seconds: arrows by a day, towards where they
/// point in the given direction of reading, and by a week; Page Up and Page Down by a month, with
/// Shift by a year; Home to today. Nothing for a key that leads nowhere, and for any with Control,
/// Alt or Super.
std::optional<double> dayAfterKey(const NSEvent& event, double day, double today,
                                  NSUserInterfaceLayoutDirection direction);
