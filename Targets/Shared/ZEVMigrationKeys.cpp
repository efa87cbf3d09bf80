#include "Targets/Shared/ZEVMigrationKeys.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

struct KeyChange {
  std::string_view oldKey;
  std::string_view newKey;
};

constexpr KeyChange KeyChanges[] = {
    // The clock and the family.
    {"skinColor", "MenubarSkinColor"},
    {"SkinType", "DropdownTheme"},
    {"ShowLauncher", "DropdownShowLauncher"},
    {"sendDiagnostics", "Diagnostics_Enabled"},
    {"CalendarShowEvents", "Time_CalendarShowEvents"},
    {"CalShowWeekNumbers", "Time_CalendarShowWeeks"},
    {"ClockFontSize", "Time_TextSize"},
    {"ClockShadowColor", "Time_TextShadowColor"},
    {"ClockTextColor", "Time_TextColor"},
    {"ClockFlashSeperators", "Time_MenubarFlashSeperators"},
    {"ClockShowMoon", "Time_DropdownShowMoon"},
    {"TimeShowCalendar", "Time_CalendarEnabled"},
    {"TimeWeekNumberFormat", "Time_WeekNumberFormat"},
    {"TimeCityMode", "Time_DropdownCityLayout"},
    {"ClockDisplayMode", "Time_MenubarFormat"},
    {"WorldClockDisplayMode", "Time_DropdownFormat"},
    {"cities", "Time_Cities"},
    // CPU.
    {"CPUGraphWidth", "CPU_MenubarGraphWidth"},
    {"CPUGraphsShowBreakdown", "CPU_MenubarGraphBreakdowns"},
    {"CPUUseCustomGraphColors", "CPU_MenubarGraphCustomColors"},
    {"CPUUserGraphColor", "CPU_MenubarGraphUser"},
    {"CPUSystemGraphColor", "CPU_MenubarGraphSystem"},
    {"CPUOverallGraphColor", "CPU_MenubarGraphOverall"},
    {"CPUPercentageColor", "CPU_MenubarTextColor"},
    {"CPUShadowColor", "CPU_MenubarTextShadowColor"},
    {"CPUFontSize", "CPU_MenubarTextSize"},
    {"CPUAppDisplayFormat", "CPU_AppFormat"},
    {"CPUMultiple", "CPU_MenubarCombineCores"},
    {"CPULimitHistoryGraph", "CPU_MenubarSingleHistoryGraph"},
    {"CPUGroupItems", "CPU_MenubarGroupItems"},
    {"CPUCombineLogicalCores", "CPU_CombineLogicalCores"},
    {"CPUDisplayMode", "CPU_MenubarMode"},
    // Load.
    {"LoadColor", "Load_MenubarTextColor"},
    {"LoadShadowColor", "Load_MenubarTextShadowColor"},
    {"LoadFontSize", "Load_MenubarTextSize"},
    // Memory.
    {"MemoryDisplayFormat", "Memory_DisplayFormat"},
    {"MemoryAppDisplayFormat", "Memory_AppFormat"},
    {"MemoryGraphWidth", "Memory_MenubarGraphWidth"},
    {"MemoryUseCustomGraphColors", "Memory_MenubarGraphCustomColors"},
    {"MemoryOverallGraphColor", "Memory_MenubarGraphOverall"},
    {"MemoryGraphsShowBreakdown", "Memory_MenubarGraphBreakdowns"},
    {"MemoryWiredGraphColor", "Memory_MenubarGraphWired"},
    {"MemoryActiveGraphColor", "Memory_MenubarGraphActive"},
    {"MemoryCompressedGraphColor", "Memory_MenubarGraphCompressed"},
    {"MemoryIncludeInactive", "Memory_IgnoreInactive"},
    {"MemoryInactiveGraphColor", "Memory_MenubarGraphInactive"},
    {"MemoryPercentageColor", "Memory_MenubarPercentageColor"},
    {"MemoryShadowColor", "Memory_MenubarPercentageShadowColor"},
    {"MemoryFontSize", "Memory_MenubarPercentageSize"},
    {"MemoryShowUFLabel", "Memory_UFShowLabel"},
    {"MemoryUsedColor", "Memory_UFUsedColor"},
    {"MemoryUsedShadowColor", "Memory_UFUsedShadowColor"},
    {"MemoryFreeColor", "Memory_UFFreeColor"},
    {"MemoryFreeShadowColor", "Memory_UFFreeShadowColor"},
    {"MemoryDisplayMode", "Memory_MenubarMode"},
    // Disks.
    {"DiskGroupItems", "Disks_MenubarGroupItems"},
    {"DisksShowNetwork", "Disks_DropdownShowNetwork"},
    {"DisksShowRemovable", "Disks_DropdownShowRemovable"},
    {"DisksShowUnmounted", "Disks_DropdownShowUnmounted"},
    {"DisksCombineActivity", "Disks_DropdownCombineActivity"},
    {"DisksMenuLayoutMode", "Disks_DropdownDisplayMode"},
    {"DisksMenubar", "Disks_MenubarItems"},
    {"DisksUseCustomGraphColors", "Disks_MenubarGraphCustomColors"},
    {"DisksVerticalGraphColor", "Disks_MenubarGraphOverallColor"},
    {"DiskPercentageColor", "Disks_MenubarPercentageColor"},
    {"DisksShadowColor", "Disks_MenubarPercentageShadowColor"},
    {"DiskFontSize", "Disks_MenubarPercentageSize"},
    {"DiskShowUFLabel", "Disks_MenubarUFShowLabel"},
    {"DiskUsedColor", "Disks_MenubarUFUsedColor"},
    {"DisksUsedShadowColor", "Disks_MenubarUFUsedShadowColor"},
    {"DiskFreeColor", "Disks_MenubarUFFreeColor"},
    {"DisksFreeShadowColor", "Disks_MenubarUFFreeShadowColor"},
    {"DiskActivityGraphWidth", "Disks_MenubarGraphActivityWidth"},
    {"DiskActivityShowGraphBackground", "Disks_MenubarGraphActivityShowBackground"},
    {"DiskActivityUseCustomGraphColors", "Disks_MenubarGraphActivityCustomColors"},
    {"DiskActivityReadGraphColor", "Disks_MenubarGraphActivityRead"},
    {"DiskActivityWriteGraphColor", "Disks_MenubarGraphActivityWrite"},
    {"DiskActivityDotRead", "Disks_MenubarDotActivityRead"},
    {"DiskActivityDotWrite", "Disks_MenubarDotActivityWrite"},
    {"DiskActivityArrowRead", "Disks_MenubarArrowRead"},
    {"DiskActivityArrowWrite", "Disks_MenubarArrowWrite"},
    {"DisksShowRWLabel", "Disks_MenubarRWShowLabel"},
    {"DisksReadTextColor", "Disks_MenubarRWReadColor"},
    {"DisksReadTextShadowColor", "Disks_MenubarRWReadShadwColor"},
    {"DisksWriteTextColor", "Disks_MenubarRWWriteColor"},
    {"DisksWriteTextShadowColor", "Disks_MenubarRWWriteShadowColor"},
    {"DiskDisplayMode", "Disks_MenubarMode"},
    // Network.
    {"NetworkGraphMode", "Network_GraphMode"},
    {"NetworkDataFormat", "Network_DataFormat"},
    {"NetworkDecimalLevel", "Network_DecimalLevel"},
    {"NetworkPrimaryInterface", "Network_PrimaryInterface"},
    {"NetworkProcessesSort", "Network_AppSort"},
    {"NetworkDisplayMode", "Network_MenubarMode"},
    {"NetworkGraphWidth", "Network_GraphWidth"},
    {"NetworkTxColor", "Network_TextUploadColor"},
    {"NetworkTxShadowColor", "Network_TextUploadShadowColor"},
    {"NetworkRxColor", "Network_TextDownloadColor"},
    {"NetworkRxShadowColor", "Network_TextDownloadShadowColor"},
    {"NetworkShowGraphBackground", "Network_GraphShowBackground"},
    {"NetworkUseCustomGraphColors", "Network_GraphCustomColors"},
    {"NetworkTxGraphColor", "Network_GraphUpload"},
    {"NetworkRxGraphColor", "Network_GraphDownload"},
    {"NetworkDotUpload", "Network_DotUpload"},
    {"NetworkDotDownload", "Network_DotDownload"},
    {"NetworkStatusUseCustomGraphColors", "Network_StatusCustomColors"},
    {"NetworkStatusConnectedColor", "Network_StatusConnected"},
    {"NetworkStatusNoAddressColor", "Network_StatusNoAddress"},
    {"NetworkStatusNotConnectedColor", "Network_StatusNotConnected"},
    // Sensors.
    {"TempType", "Sensors_TemperatureMode"},
    {"SensorsDisplayMode", "Sensors_MenubarMode"},
    {"SensorsMenubar", "Sensors_MenubarItems"},
    {"TempColor", "Sensors_MenubarTextColor"},
    {"TempShadowColor", "Sensors_MenubarTextShadowColor"},
    {"TempFontSize", "Sensors_MenubarTextSize"},
    // FanControl.
    {"SensorsFanSetDefault", "FanControl_DefaultSet"},
    {"SensorsFanSetDraining", "FanControl_DrainingSet"},
    {"SensorsFanSetCharging", "FanControl_ChargingSet"},
    {"SensorsFanSetChangeOnCharging", "FanControl_ChangeOnCharging"},
    {"SensorsFanSetChangeOnBattery", "FanControl_ChangeOnBattery"},
    {"FanSpeedSets", "FanControl_Sets"},
    // Battery.
    {"BatteryColoredGraphUseCustomColors", "Battery_ColorGraphCustomColors"},
    {"BatteryColoredGraphDrainingColor", "Battery_ColorGraphDraining"},
    {"BatteryColoredGraphChargingColor", "Battery_ColorGraphCharging"},
    {"BatteryColoredGraphChargedColor", "Battery_ColorGraphCharged"},
    {"BatteryColoredGraphLowColor", "Battery_ColorGraphLow"},
    {"BatteryPercentageColor", "Battery_PercentageColor"},
    {"BatteryPercentageShadowColor", "Battery_PercentageShadowColor"},
    {"BatteryPercentageFontSize", "Battery_PercentageSize"},
    {"BatteryTimeColor", "Battery_TimeColor"},
    {"BatteryTimeShadowColor", "Battery_TimeShadowColor"},
    {"BatteryTimeFontSize", "Battery_TimeSize"},
    {"BatteryDisplayMode", "Battery_MenubarMode"},
    {"BatteryDisplayModeCharged", "Battery_MebubarModeCharged"},
    {"BatteryDisplayModeCharging", "Battery_MenubarModeCharging"},
    {"BatteryDisplayModeDraining", "Battery_MenubarModeDraining"},
    {"BatteryCustomizeStates", "Battery_MenubarCustomizeStates"},
    {"BatteryNotifications", "Battery_Notifications"},
    {"BatteryHideUPSFromMenubar", "Battery_MenubarHideUPS"},
};

/// What has no counterpart any more.
constexpr std::array<std::string_view, 3> SkippedKeys = {
    "updateCheckerEnabled", "SensorsFanControlEnabled", "migratedExtras4.0"};

}  // namespace

bool isSkippedInMigration(std::string_view oldKey) {
  return std::find(SkippedKeys.begin(), SkippedKeys.end(), oldKey) != SkippedKeys.end();
}

std::string_view migratedKey(std::string_view oldKey) {
  const auto change =
      std::find_if(std::begin(KeyChanges), std::end(KeyChanges),
                   [&](const KeyChange& candidate) { return candidate.oldKey == oldKey; });
  return change != std::end(KeyChanges) ? change->newKey : oldKey;
}
