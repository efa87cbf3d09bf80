#include "Platform/Foundation/Text/NSLocale.h"

#include <gtest/gtest.h>

#include "Platform/Foundation/Settings/NSUserDefaults.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Platform/Support/Files.h"

namespace {

constexpr auto Table = "Platform/Foundation/LocaleTests.txt";

// POSIX: LC_ALL counts before the category, that before LANG; an empty variable counts as unset.
TEST(Locale, VariablesHaveTheirRank) {
  for (const auto& [lang, time, all, identifier] :
       casesIn<std::string, std::string, std::string, std::string>(Table, "rank")) {
    [[maybe_unused]] const EnvironmentVariable variables[] = {
        {"LANG", lang}, {"LC_TIME", time}, {"LC_ALL", all}};
    EXPECT_EQ(NSLocale::currentLocale().identifier(), identifier) << lang << time << all;
    NSLocale::setCurrentLocale("th_TH");
    EXPECT_EQ(NSLocale::currentLocale().identifier(), "th_TH");
    NSLocale::setCurrentLocale("");
    EXPECT_EQ(NSLocale::currentLocale().identifier(), identifier);
  }
  EXPECT_EQ(NSLocale::environmentIdentifier("LC_MESSAGES"), "fr_FR");
}

// However long or wild the variable is.
TEST(Locale, IsAlwaysOneThatHasTexts) {
  auto rows = casesIn<std::string, std::string>(Table, "environment");
  rows.push_back({std::string(200'000, 'a'), "en"});
  rows.push_back({"de_" + std::string(200'000, 'X'), "en"});
  for (const auto& [value, identifier] : rows) {
    const EnvironmentVariable all("LC_ALL", value.c_str());
    EXPECT_EQ(NSLocale::currentLocale().identifier(), identifier) << value.substr(0, 40);
  }
  EXPECT_EQ(localeIdentifierFromEnvironment(""), "en_US_POSIX");
  EXPECT_EQ(localeIdentifierFromEnvironment("be@latin"), "be_Latn");
  for (const auto& [setting, identifier] : casesIn<std::string, std::string>(Table, "setting"))
    EXPECT_EQ(NSLocale::localeWithLocaleIdentifier(setting).identifier(), identifier);
  EXPECT_EQ(NSLocale::localeWithLocaleIdentifier("xx_AT").firstWeekday(), 2) << "Austria's custom";
}

TEST(Locale, LanguagesComeInTheUsersOrder) {
  auto& defaults = NSUserDefaults::standardUserDefaults();
  const auto languages = [&] {
    defaults.synchronize();
    return defaults.dictionaryRepresentation().at("NSLanguages");
  };
  EXPECT_EQ(languages(), PropertyList(PropertyList::Array{"en_US"}));
  const EnvironmentVariable occitan("LC_ALL", "oc_FR");
  EXPECT_EQ(languages(), PropertyList(PropertyList::Array{"oc_FR", "fr_FR"}));
  const EnvironmentVariable list("LANGUAGE", "pt_BR:pt::sr@latin");
  EXPECT_EQ(languages(), PropertyList(PropertyList::Array{"pt_BR", "pt", "sr_Latn"}));
}

TEST(Locale, KnowsItsCustoms) {
  for (const auto& [identifier, lengths, side] :
       casesIn<std::string, std::string, std::string>(Table, "customs")) {
    const NSLocale locale = NSLocale::localeWithLocaleIdentifier(identifier);
    EXPECT_EQ(locale.usesMetricSystem() ? "metric" : "imperial", lengths) << identifier;
    const bool isFromTheRight =
        locale.characterDirection() == NSLocaleLanguageDirection::RightToLeft;
    EXPECT_EQ(isFromTheRight ? "right" : "left", side) << identifier;
  }
}

TEST(Locale, KnowsWhatAnIdentifierIs) {
  for (const auto& [identifier, answer] : casesIn<std::string, std::string>(Table, "identifiers"))
    EXPECT_EQ(isKnownLocaleIdentifier(identifier) ? "known" : "unknown", answer) << identifier;
  EXPECT_FALSE(isKnownLocaleIdentifier(std::string(5000, 'x')));
}

}  // namespace
