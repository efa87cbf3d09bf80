#include "Targets/Shared/ZEVDefaultSettings.h"

#include <array>
#include <cstdio>

#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Text/NSUUID.h"
#include "Platform/Foundation/Time/NSDate.h"
#include "Platform/Foundation/Time/NSDateFormatter.h"
#include "Targets/Shared/ZEVColorText.h"

namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

/// Text in the menu bar: the keys of its colour and its shadow, which each have a "-Dark" form.
struct TextStyle {
  const char* color;
  const char* shadow;
};

constexpr TextStyle TextStyles[] = {
    {"Time_TextColor", "Time_TextShadowColor"},
    {"CPU_MenubarTextColor", "CPU_MenubarTextShadowColor"},
    {"Load_MenubarTextColor", "Load_MenubarTextShadowColor"},
    {"Memory_MenubarPercentageColor", "Memory_MenubarPercentageShadowColor"},
    {"Memory_UFUsedColor", "Memory_UFUsedShadowColor"},
    {"Memory_UFFreeColor", "Memory_UFFreeShadowColor"},
    {"Disks_MenubarPercentageColor", "Disks_MenubarPercentageShadowColor"},
    {"Disks_MenubarRWReadColor", "Disks_MenubarRWReadShadwColor"},
    {"Disks_MenubarRWWriteColor", "Disks_MenubarRWWriteShadowColor"},
    {"Disks_MenubarUFUsedColor", "Disks_MenubarUFUsedShadowColor"},
    {"Disks_MenubarUFFreeColor", "Disks_MenubarUFFreeShadowColor"},
    {"Network_TextUploadColor", "Network_TextUploadShadowColor"},
    {"Network_TextDownloadColor", "Network_TextDownloadShadowColor"},
    {"Sensors_MenubarTextColor", "Sensors_MenubarTextShadowColor"},
    {"Battery_PercentageColor", "Battery_PercentageShadowColor"},
    {"Battery_TimeColor", "Battery_TimeShadowColor"},
};

constexpr const char* TextSizes[] = {
    "Time_TextSize",
    "CPU_MenubarTextSize",
    "Load_MenubarTextSize",
    "Memory_MenubarPercentageSize",
    "Disks_MenubarPercentageSize",
    "Sensors_MenubarTextSize",
    "Battery_PercentageSize",
    "Battery_TimeSize",
};

struct NumberSetting {
  const char* key;
  int value;
};

constexpr NumberSetting Numbers[] = {
    {"Time_MenubarFlashSeperators", 0},
    {"Time_DropdownCityLayout", 1},
    {"Time_DropdownShowMoon", 1},
    {"Time_CalendarEnabled", 1},
    {"Time_CalendarShowEvents", 1},
    {"Time_CalendarShowWeeks", 0},

    {"MenubarSkinColor", 0},
    {"MenubarSkinColor-Light", 0},
    {"MenubarSkinColor-Dark", 0},
    {"DropdownTheme", 0},
    {"DropdownTheme-Light", 0},
    {"DropdownTheme-Dark", 1},
    {"MenubarTheme", 1},
    {"MenubarTheme-Light", 1},
    {"MenubarTheme-Dark", 1},
    {"MenubarGraphOpacity-DarkMode", 1},
    {"TimerFrequency", 1},
    {"DropdownShowLauncher", 1},
    {"ProcessesCombine", 1},

    {"CPU_AppFormat", 0},
    {"CPU_CombineLogicalCores", 1},
    {"CPU_MenubarGraphWidth", 30},
    {"CPU_MenubarCombineCores", 1},
    {"CPU_MenubarGraphBreakdowns", 1},
    {"CPU_MenubarGraphCustomColors", 0},
    {"CPU_MenubarSingleHistoryGraph", 1},
    {"CPU_MenubarGroupItems", 0},

    {"Memory_AppFormat", 0},
    {"Memory_DisplayFormat", 0},
    {"Memory_MenubarGraphWidth", 30},
    {"Memory_IgnoreInactive", 1},
    {"Memory_MenubarGraphCustomColors", 0},
    {"Memory_MenubarGraphBreakdowns", 1},
    {"Memory_UFShowLabel", 1},

    {"Disks_DropdownDisplayMode", 0},
    {"Disks_DropdownCombineActivity", 0},
    {"Disks_MenubarCombineActivity", 1},
    {"Disks_MenubarGraphActivityShowBackground", 1},
    {"Disks_MenubarRWShowLabel", 1},
    {"Disks_SeperateFusion", 0},
    {"Disks_MenubarGraphActivityWidth", 50},
    {"Disks_DropdownShowNetwork", 1},
    {"Disks_DropdownShowRemovable", 1},
    {"Disks_DropdownShowUnmounted", 0},
    {"Disks_MenubarGraphCustomColors", 0},
    {"Disks_MenubarGroupItems", 0},
    {"Disks_MenubarUFShowLabel", 1},
    {"Disks_MenubarGraphActivityCustomColors", 0},
    {"Disks_MonitorSMART", 1},
    {"Disks_ActivityGraphMode", 0},
    {"Disks_DropdownShowAllActivity", 0},

    {"Network_GraphMode", 0},
    {"Network_AppSort", 0},
    {"Network_GraphWidth", 50},
    {"Network_DataFormat", 0},
    {"Network_DecimalLevel", 0},
    {"Network_GraphShowBackground", 1},
    {"Network_GraphCustomColors", 0},
    {"Network_StatusCustomColors", 0},
    {"Network_OnlyFirstIPAddress", 0},
    {"Network_ShowIPV6", 1},

    {"FanControl_Enabled", 0},
    {"FanControl_ChangeOnCharging", 0},
    {"FanControl_ChangeOnBattery", 0},

    {"Battery_MenubarHideUPS", 0},
    {"Battery_MenubarCustomizeStates", 0},
    {"Battery_ColorGraphCustomColors", 0},
};

struct TextSetting {
  const char* key;
  const char* value;
};

/// Modes of the siblings' menu-bar items.
constexpr TextSetting Modes[] = {
    {"CPU_MenubarMode", "100,0"},         {"Memory_MenubarMode", "100,0"},
    {"Disks_MenubarMode", "100,0"},       {"Network_MenubarMode", "2,1"},
    {"Sensors_MenubarMode", "0"},         {"Battery_MenubarMode", "0"},
    {"Battery_MebubarModeCharged", "0"},  {"Battery_MenubarModeCharging", "0"},
    {"Battery_MenubarModeDraining", "0"},
};

struct ColorSetting {
  const char* key;
  double red;
  double green;
  double blue;
};

/// Colours of the siblings' graphs and lamps, all opaque.
constexpr ColorSetting GraphColors[] = {
    {"CPU_MenubarGraphOverall", 0.098, 0.580, 0.941},
    {"CPU_MenubarGraphUser", 0.098, 0.580, 0.941},
    {"CPU_MenubarGraphSystem", 1.000, 0.254, 0.254},
    {"Memory_MenubarGraphOverall", 0.098, 0.580, 0.941},
    {"Memory_MenubarGraphWired", 1.000, 0.462, 0.168},
    {"Memory_MenubarGraphActive", 0.098, 0.580, 0.941},
    {"Memory_MenubarGraphCompressed", 1.000, 0.254, 0.254},
    {"Memory_MenubarGraphInactive", 0.568, 0.639, 0.768},
    {"Disks_MenubarGraphOverallColor", 0.098, 0.580, 0.941},
    {"Disks_MenubarGraphActivityRead", 0.098, 0.580, 0.941},
    {"Disks_MenubarGraphActivityWrite", 1.000, 0.254, 0.254},
    {"Disks_MenubarDotActivityRead", 0.098, 0.580, 0.941},
    {"Disks_MenubarDotActivityWrite", 1.000, 0.254, 0.254},
    {"Disks_MenubarArrowRead", 0.098, 0.580, 0.941},
    {"Disks_MenubarArrowWrite", 1.000, 0.254, 0.254},
    {"Network_StatusConnected", 0.513, 0.800, 0.113},
    {"Network_StatusNoAddress", 1.000, 0.462, 0.168},
    {"Network_StatusNotConnected", 1.000, 0.254, 0.254},
    {"Network_GraphUpload", 1.000, 0.254, 0.254},
    {"Network_GraphDownload", 0.098, 0.580, 0.941},
    {"Network_DotUpload", 1.000, 0.254, 0.254},
    {"Network_DotDownload", 0.098, 0.580, 0.941},
    {"Battery_ColorGraphCharging", 1.000, 0.462, 0.168},
    {"Battery_ColorGraphLow", 1.000, 0.254, 0.254},
    {"Battery_ColorGraphDraining", 0.098, 0.580, 0.941},
    {"Battery_ColorGraphCharged", 0.513, 0.800, 0.113},
};

void addClockFormats(Dictionary& defaults) {
  NSDateFormatter formatter;
  formatter.setDateStyle(NSDateFormatterStyle::None);
  formatter.setTimeStyle(NSDateFormatterStyle::Short);
  const std::string pattern = formatter.dateFormat();
  const auto has = [&](std::string_view part) { return pattern.find(part) != std::string::npos; };

  const char* hour = has("HH") ? "HH" : has("H") ? "H" : "hh";
  Array dropdown = {hour, ":", "mm"};
  if (!has("H")) {
    dropdown.emplace_back(" ");
    dropdown.emplace_back("a");
  }
  defaults.emplace("Time_MenubarFormat", Array{"EE", "' '", hour, ":", "mm"});
  defaults.emplace("Time_DropdownFormat", std::move(dropdown));
}

PropertyList batteryNotification() {
  std::string identifier = NSUUIDString();
  if (identifier.empty()) {
    std::array<char, 32> seconds{};
    std::snprintf(seconds.data(), seconds.size(), "%.2f", NSDate::date().timeIntervalSince1970());
    identifier = seconds.data();
  }
  return Dictionary{{"level", 10}, {"type", 0}, {"style", 0}, {"uuid", identifier}};
}

}  // namespace

Dictionary defaultSettings(bool isLaptop) {
  Dictionary defaults;
  addClockFormats(defaults);
  for (const auto& [key, value] : Numbers)
    defaults.emplace(key, value);
  for (const auto& [key, value] : Modes)
    defaults.emplace(key, value);
  for (const char* key : TextSizes)
    defaults.emplace(key, 13);
  for (const auto& [color, shadow] : TextStyles) {
    defaults.emplace(color, "0.11 0.11 0.11 1.0");
    defaults.emplace(std::string(color) + "-Dark", "1.0 1.0 1.0 1.0");
    defaults.emplace(shadow, "1 1 1 0.5");
    defaults.emplace(std::string(shadow) + "-Dark", "1.0 1.0 1.0 0.0");
  }
  for (const auto& [key, red, green, blue] : GraphColors) {
    defaults.emplace(key, stringFromColor(NSColor::colorWithDeviceRed(red, green, blue, 1)));
  }

  const bool isMetric = NSLocale::currentLocale().usesMetricSystem();
  defaults.emplace("Time_WeekNumberFormat", isMetric ? 1 : 0);
  defaults.emplace("Sensors_TemperatureMode", isMetric ? 0 : 1);
  defaults.emplace("Time_Cities", Array{"5128581", "2643743", "2988507", "2147714"});
  defaults.emplace("Theme-SeperateStyles", false);
  defaults.emplace("StatusItems-FixedPosition", true);
  defaults.emplace("StatusItems-OrderingDisabled", false);
  defaults.emplace("MenubarGraphOpacity", 0.5);
  defaults.emplace("MenubarGraphOpacity-Light", 0.5);
  defaults.emplace("MenubarGraphOpacity-Dark", 1.0);
  defaults.emplace("Battery_MenubarHideBluetooth", isLaptop);
  defaults.emplace("Battery_Notifications", Array{batteryNotification()});
  return defaults;
}
