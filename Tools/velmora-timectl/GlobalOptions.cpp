#include "Tools/velmora-timectl/GlobalOptions.h"

#include <stdlib.h>

#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/Foundation/Text/NSLocale.h"
#include "Platform/Foundation/Time/SystemClock.h"
#include "Targets/Shared/ZEVPreferences.h"
#include "Tools/velmora-timectl/Errors.h"
#include "Tools/velmora-timectl/Json.h"

namespace {

constexpr OptionSpec Options[] = {
    {"--now", "INSTANT", "the present instant (default: the clock's)"},
    {"--system-zone", "ZONE", "the system time zone (default: the machine's)"},
    {"--locale", "LOCALE", "the current locale (default: from the environment)"},
    {"--dark", "", "the menu bar is dark"},
    {"--set", "KEY=JSON", "a setting's value for this run only; may be repeated"},
    {"--no-user-settings", "", "start from the defaults, whatever is stored"},
    {"--help", "", "show this"},
    {"--version", "", "show the version"},
};

void applyLocale(const std::string& text) {
  const std::string identifier = localeIdentifierFromEnvironment(text);
  if (text.empty() || !isKnownLocaleIdentifier(identifier)) {
    throw UsageError("--locale: there is no locale '" + text + "'; write one such as de_DE");
  }
  NSLocale::setCurrentLocale(identifier);
  // The language of texts is looked up in the environment.
  setenv("LANGUAGE", identifier.c_str(), 1);
}

void applySetting(const std::string& text) {
  const size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw UsageError("--set: '" + text + "' is not of the form KEY=JSON");
  }
  setPreferenceOverride(text.substr(0, equals),
                        propertyListFromJson(text.substr(equals + 1), "--set"),
                        ZEVPreferences_Time::Domain);
}

}  // namespace

std::span<const OptionSpec> globalOptions() { return Options; }

void setMenubarDark(bool isDark) {
  setPreferenceOverride("AppleInterfaceStyle", isDark ? PropertyList("Dark") : PropertyList(),
                        ".GlobalPreferences");
  setPreferenceOverride("increaseContrast", {}, "com.apple.universalaccess");
}

void applyGlobalOptions(const Arguments& arguments) {
  if (const auto now = arguments.value("--now")) {
    static ManualClock clock(instantFromText(*now, "--now").timeIntervalSince1970());
    SystemClock::install(&clock);
  }
  if (const auto zone = arguments.value("--system-zone")) {
    NSTimeZone::setSystemTimeZone(zoneFromText(*zone, "--system-zone"));
  }
  if (const auto locale = arguments.value("--locale")) applyLocale(*locale);
  setMenubarDark(arguments.has("--dark"));
  if (arguments.has("--no-user-settings")) ignoreStoredPreferences(ZEVPreferences_Time::Domain);
  for (const std::string& setting : arguments.values("--set"))
    applySetting(setting);
}
