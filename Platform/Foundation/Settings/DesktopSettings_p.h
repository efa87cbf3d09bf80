#pragma once

#include <string_view>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// What the desktop says for a key under which the code asks for it; null if it says nothing.
///
/// | domain                    | key                   | the settings portal's              |
/// |---------------------------|-----------------------|------------------------------------|
/// | ".GlobalPreferences"      | "AppleInterfaceStyle" | colour scheme: "Dark" or nothing   |
/// | "com.apple.universalaccess" | "increaseContrast"  | contrast: true or nothing          |
PropertyList desktopSetting(std::string_view key, std::string_view domain);

/// From here on a change of such a setting is delivered as
/// "AppleInterfaceThemeChangedNotification" or "AXInterfaceIncreaseContrastStatusDidChange".
void watchDesktopSettings();
