#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>

#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tools/velmora-timectl/Command.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/SettingKinds.h"

namespace {

constexpr std::string_view Domain = ZEVPreferences_Time::Domain;

/// What a running clock has to rebuild when a setting changes. A key that is not here needs no more
/// than a redraw.
struct ResetRule {
  std::string_view key;
  std::string_view resetKey;
};

constexpr ResetRule ResetRules[] = {
    {"Time_TextSize", "text"},
    {"Time_TextColor", "text"},
    {"Time_TextColor-Dark", "text"},
    {"Time_TextShadowColor", "text"},
    {"Time_TextShadowColor-Dark", "text"},
    {"Time_CalendarEnabled", "calendar"},
    {"Time_CalendarShowEvents", "calendar"},
    {"Time_CalendarShowWeeks", "calendar"},
    {"Time_WeekNumberFormat", "calendar"},
    {"Time_CalendarFolders", "calendar"},
    {"Time_CalendarAddresses", "calendar"},
    {"Time_Cities", "cities"},
    {"Time_CityNames", "citynames"},
    {"Time_DropdownCityLayout", "citymode"},
    {"Time_DropdownShowMoon", "moon"},
    {"DropdownTheme", "dropdown"},
    {"DropdownTheme-Light", "dropdown"},
    {"DropdownTheme-Dark", "dropdown"},
    {"Theme-SeperateStyles", "styles"},
    {"MenubarTheme", "styles"},
    {"MenubarTheme-Light", "styles"},
    {"MenubarTheme-Dark", "styles"},
    {"MenubarSkinColor", "styles"},
    {"MenubarSkinColor-Light", "styles"},
    {"MenubarSkinColor-Dark", "styles"},
    {"MenubarGraphOpacity", "styles"},
    {"MenubarGraphOpacity-Light", "styles"},
    {"MenubarGraphOpacity-Dark", "styles"},
    {"MenubarGraphOpacity-DarkMode", "styles"},
    {"DropdownShowLauncher", "launcher"},
};

/// What concerns every module of the family is told to their extras, too.
constexpr std::string_view ResetKeysOfTheFamily[] = {"dropdown", "styles", "launcher"};

std::string resetKeyFor(const std::string& key, const Arguments& arguments) {
  if (const auto chosen = arguments.value("--reset")) return *chosen;
  const auto rule = std::find_if(std::begin(ResetRules), std::end(ResetRules),
                                 [&](const ResetRule& candidate) { return candidate.key == key; });
  return rule != std::end(ResetRules) ? std::string(rule->resetKey) : "";
}

std::string_view sourceName(SettingSource source) {
  switch (source) {
    case SettingSource::Stored:
      return "stored";
    case SettingSource::Previous:
      return "previous";
    case SettingSource::Default:
      return "default";
    case SettingSource::None:
      break;
  }
  return "none";
}

/// What the clock uses.
Json settingJson(const std::string& key) {
  auto& settings = *ZEVPreferences_Time::sharedPreferences();
  return {{"key", key},
          {"value", jsonFromPropertyList(settings.objectForKey(key))},
          {"source", sourceName(settings.sourceOfKey(key))}};
}

/// A running clock follows a change; one that starts later takes the old value again.
void warnOfPreviousVersion(const std::string& key) {
  const auto& settings = *ZEVPreferences_Time::sharedPreferences();
  if (settings.sourceOfKey(key) != SettingSource::Previous) return;
  NSLog("the settings of the previous version hold " + key +
        ", too, for every clock that starts; 'velmora-timectl defaults write Migrated_5.0 true' "
        "leaves them behind");
}

Json changeSetting(const std::string& key, const PropertyList& value, const Arguments& arguments) {
  try {
    CFPreferencesSetAppValue(key, value, Domain);
  } catch (const std::invalid_argument& error) {
    throw UsageError(std::string("defaults write: ") + error.what());
  }
  if (!CFPreferencesAppSynchronize(Domain)) {
    throw CommandFailure("the setting " + key + " could not be stored");
  }
  warnOfPreviousVersion(key);
  ZEVRefreshKey(key);
  PropertyList::Dictionary userInfo = {{"key", key}};
  const std::string resetKey = resetKeyFor(key, arguments);
  if (!resetKey.empty()) userInfo.emplace("resetKey", resetKey);
  auto& center = NSDistributedNotificationCenter::defaultCenter();
  center.postNotification("VelmoraTimePreferencesChanged", userInfo);
  if (std::ranges::find(ResetKeysOfTheFamily, resetKey) != std::end(ResetKeysOfTheFamily)) {
    center.postNotification("VelmoraGlobalDisplayChange", userInfo);
  }
  return settingJson(key);
}

void expectNoReset(const Arguments& arguments) {
  if (arguments.has("--reset")) throw UsageError("defaults: --reset goes with write and delete");
}

const std::string& keyToChange(const Arguments& arguments) {
  const std::string& key = arguments.rest()[1];
  if (key.empty()) throw UsageError("defaults: the KEY is empty");
  return key;
}

Json listSettings(const Arguments& arguments) {
  expectNoReset(arguments);
  arguments.expectRest(std::array<std::string_view, 1>{"list"});
  return jsonFromPropertyList(CFPreferencesCopyAllValues(Domain));
}

Json readSetting(const Arguments& arguments) {
  expectNoReset(arguments);
  arguments.expectRest(std::array<std::string_view, 2>{"read", "KEY"});
  return settingJson(arguments.rest()[1]);
}

/// Refuses a value of another kind than a known key's, so that a slip does not blank the clock.
void expectRightKind(const std::string& key, const PropertyList& value) {
  const auto wanted = kindOfSetting(key);
  if (!wanted || wanted->fits(value)) return;
  throw UsageError("defaults write: " + key + " must be " + wanted->description + ", such as " +
                   std::string(wanted->example) + "; --force stores the value all the same");
}

Json writeSetting(const Arguments& arguments) {
  arguments.expectRest(std::array<std::string_view, 3>{"write", "KEY", "JSON"});
  const std::string& key = keyToChange(arguments);
  const PropertyList value = propertyListFromJson(arguments.rest()[2], "defaults write");
  if (value.isNull()) {
    throw UsageError("defaults write: null is no value; 'defaults delete " + key +
                     "' removes the setting");
  }
  if (!arguments.has("--force")) expectRightKind(key, value);
  return changeSetting(key, value, arguments);
}

Json deleteSetting(const Arguments& arguments) {
  arguments.expectRest(std::array<std::string_view, 2>{"delete", "KEY"});
  return changeSetting(keyToChange(arguments), {}, arguments);
}

Json defaultsCommand(const Arguments& arguments) {
  struct Action {
    std::string_view name;
    Json (*run)(const Arguments&);
  };
  constexpr Action Actions[] = {{"list", listSettings},
                                {"read", readSetting},
                                {"write", writeSetting},
                                {"delete", deleteSetting}};
  for (const Action& action : Actions) {
    if (!arguments.rest().empty() && arguments.rest().front() == action.name) {
      return action.run(arguments);
    }
  }
  throw UsageError("defaults: write 'list', 'read KEY', 'write KEY JSON' or 'delete KEY'");
}

constexpr OptionSpec DefaultsOptions[] = {
    {"--reset", "RESETKEY", "what a running clock rebuilds (default: right for the key)"},
    {"--force", "", "write a value of the wrong kind, too"},
};

constexpr Command Commands[] = {
    {"defaults", "list | read KEY | write KEY JSON | delete KEY",
     "shows or changes the stored settings; a running clock follows at once", DefaultsOptions,
     defaultsCommand},
};

}  // namespace

std::span<const Command> defaultsCommands() { return Commands; }
