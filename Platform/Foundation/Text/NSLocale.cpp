#include "Platform/Foundation/Text/NSLocale.h"

#include <unicode/calendar.h>
#include <unicode/localematcher.h>
#include <unicode/locid.h>
#include <unicode/numsys.h>
#include <unicode/ulocdata.h>
#include <unicode/ures.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

std::string installedIdentifier;

constexpr std::string_view IdentifierCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";

/// What of an identifier can be one: its length, and where the keywords start, are bounded, because
/// it comes from the environment or from a settings file.
std::string_view plausiblePart(std::string_view identifier) {
  constexpr size_t Longest = 100;
  const size_t end =
      std::min(identifier.find_first_not_of(IdentifierCharacters), identifier.size());
  const bool hasKeywords = end < identifier.size() && identifier[end] == '@';
  if (identifier.size() <= Longest && hasKeywords) return identifier;
  return end <= Longest ? identifier.substr(0, end) : std::string_view();
}

bool hasTexts(const icu::Locale& locale) {
  if (locale.isBogus() || *locale.getLanguage() == '\0') return false;
  UErrorCode status = U_ZERO_ERROR;
  ures_close(ures_open(nullptr, locale.getName(), &status));
  return U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING;
}

bool isRegion(std::string_view code) {
  const char* const* regions = icu::Locale::getISOCountries();
  for (; *regions != nullptr; ++regions) {
    if (code == *regions) return true;
  }
  return false;
}

/// By the languages' nearness in CLDR; the customs stay those of the wanted region.
icu::Locale nearestLocale(const icu::Locale& wanted) {
  UErrorCode status = U_ZERO_ERROR;
  icu::LocaleMatcher::Builder builder;
  int32_t count = 0;
  const icu::Locale* available = icu::Locale::getAvailableLocales(count);
  for (int32_t index = 0; index < count; ++index)
    builder.addSupportedLocale(available[index]);
  const icu::LocaleMatcher matcher = builder.build(status);
  const auto match = matcher.getBestMatchResult(wanted, status);
  const bool isMatched = U_SUCCESS(status) && match.getSupportedIndex() >= 0;
  const std::string language = isMatched ? match.getSupportedLocale()->getLanguage()
                                         : icu::Locale::getEnglish().getLanguage();
  const bool keepsRegion = isRegion(wanted.getCountry());
  return {language.c_str(), keepsRegion ? wanted.getCountry() : nullptr};
}

/// A numbering that does not exist would make every pattern fail; an unknown calendar does not.
bool hasUsableKeywords(const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::NumberingSystem> numbers(
      icu::NumberingSystem::createInstance(locale, status));
  return U_SUCCESS(status);
}

std::string knownIdentifier(std::string_view identifier) {
  const std::string plausible(plausiblePart(identifier));
  const icu::Locale locale(plausible.c_str());
  if (locale.isBogus()) return icu::Locale::getEnglish().getName();
  if (hasTexts(locale)) return hasUsableKeywords(locale) ? plausible : locale.getBaseName();
  // A language whose texts are in another script than the wanted one.
  const icu::Locale inItsScript(locale.getLanguage(), locale.getCountry());
  return hasTexts(inItsScript) ? inItsScript.getName() : nearestLocale(locale).getName();
}

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
  return !identifier.empty() && plausiblePart(identifier) == identifier &&
         hasTexts(icu::Locale(std::string(identifier).c_str()));
}

std::string NSLocale::environmentIdentifier(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return localeIdentifierFromEnvironment(value);
  }
  return localeIdentifierFromEnvironment("C");
}

NSLocale NSLocale::currentLocale() {
  struct Answer {
    std::string asked;
    std::string identifier;
  };
  thread_local Answer last;
  std::string asked =
      installedIdentifier.empty() ? environmentIdentifier("LC_TIME") : installedIdentifier;
  if (last.asked != asked) {
    last.identifier = knownIdentifier(asked);
    last.asked = std::move(asked);
  }
  return NSLocale(last.identifier);
}

NSLocale NSLocale::localeWithLocaleIdentifier(std::string_view identifier) {
  return NSLocale(knownIdentifier(identifier));
}

void NSLocale::setCurrentLocale(std::string_view identifier) { installedIdentifier = identifier; }

bool NSLocale::usesMetricSystem() const {
  UErrorCode status = U_ZERO_ERROR;
  const UMeasurementSystem system = ulocdata_getMeasurementSystem(identifier_.c_str(), &status);
  return U_FAILURE(status) || system != UMS_US;
}

NSLocaleLanguageDirection NSLocale::characterDirection() const {
  return icu::Locale(identifier_.c_str()).isRightToLeft() != 0
             ? NSLocaleLanguageDirection::RightToLeft
             : NSLocaleLanguageDirection::LeftToRight;
}

int NSLocale::firstWeekday() const {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Calendar> calendar(
      icu::Calendar::createInstance(icu::Locale(identifier_.c_str()), status));
  return U_FAILURE(status) ? 1 : static_cast<int>(calendar->getFirstDayOfWeek(status));
}
