#include "Platform/Foundation/NSLocale.h"

#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/uloc.h>
#include <unicode/ulocdata.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

std::string installedIdentifier;

}  // namespace

std::string localeIdentifierFromEnvironment(std::string_view value) {
  const std::string_view modifier =
      value.find('@') != std::string_view::npos ? value.substr(value.find('@') + 1) : "";
  std::string identifier(value.substr(0, value.find_first_of(".@")));
  if (identifier.empty() || identifier == "C" || identifier == "POSIX") return "en_US_POSIX";
  // glibc puts the script behind an at sign (sr_RS@latin), the locale data in the middle.
  const std::string_view script = modifier == "latin"        ? "Latn"
                                  : modifier == "cyrillic"   ? "Cyrl"
                                  : modifier == "devanagari" ? "Deva"
                                                             : "";
  if (!script.empty()) {
    const size_t region = std::min(identifier.find('_'), identifier.size());
    identifier.insert(region, "_" + std::string(script));
  }
  return identifier;
}

bool isKnownLocaleIdentifier(std::string_view identifier) {
  const icu::Locale locale(std::string(identifier).c_str());
  if (identifier.empty() || locale.isBogus() || *locale.getLanguage() == '\0') return false;
  int32_t count = 0;
  const icu::Locale* available = icu::Locale::getAvailableLocales(count);
  for (int32_t index = 0; index < count; ++index) {
    if (std::strcmp(available[index].getLanguage(), locale.getLanguage()) == 0) return true;
  }
  return false;
}

std::string NSLocale::environmentIdentifier(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return localeIdentifierFromEnvironment(value);
  }
  return localeIdentifierFromEnvironment("C");
}

NSLocale NSLocale::currentLocale() {
  return NSLocale(installedIdentifier.empty() ? environmentIdentifier("LC_TIME")
                                              : installedIdentifier);
}

NSLocale NSLocale::localeWithLocaleIdentifier(std::string_view identifier) {
  return NSLocale(std::string(identifier));
}

void NSLocale::setCurrentLocale(std::string_view identifier) { installedIdentifier = identifier; }

bool NSLocale::usesMetricSystem() const {
  UErrorCode status = U_ZERO_ERROR;
  const UMeasurementSystem system = ulocdata_getMeasurementSystem(identifier_.c_str(), &status);
  return U_FAILURE(status) || system != UMS_US;
}

int NSLocale::firstWeekday() const {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Calendar> calendar(
      icu::Calendar::createInstance(icu::Locale(identifier_.c_str()), status));
  return U_FAILURE(status) ? 1 : static_cast<int>(calendar->getFirstDayOfWeek(status));
}
