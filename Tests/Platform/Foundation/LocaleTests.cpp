#include "Platform/Foundation/Text/NSLocale.h"

#include <gtest/gtest.h>

#include "Platform/Foundation/Settings/NSUserDefaults.h"
#include "Tests/Platform/Support/Files.h"

namespace {

TEST(Locale, IsReadFromTheEnvironmentsSpelling) {
  for (const auto& [spelling, identifier] : {std::pair{"de_DE.UTF-8", "de_DE"},
                                             {"de_DE.UTF-8@euro", "de_DE"},
                                             {"C", "en_US_POSIX"},
                                             {"", "en_US_POSIX"},
                                             {"sr_RS.UTF-8@latin", "sr_Latn_RS"},
                                             {"sd_IN@devanagari", "sd_Deva_IN"},
                                             {"be@latin", "be_Latn"},
                                             {"ca_ES@valencia", "ca_ES"}}) {
    EXPECT_EQ(localeIdentifierFromEnvironment(spelling), identifier) << spelling;
  }
}

// POSIX: LC_ALL counts before the category, that before LANG; an empty variable counts as unset.
TEST(Locale, VariablesHaveTheirRank) {
  const EnvironmentVariable lang("LANG", "fr_FR.UTF-8");
  EXPECT_EQ(NSLocale::currentLocale().identifier(), "fr_FR");
  const EnvironmentVariable time("LC_TIME", "de_DE.UTF-8");
  EXPECT_EQ(NSLocale::currentLocale().identifier(), "de_DE");
  EXPECT_EQ(NSLocale::environmentIdentifier("LC_MESSAGES"), "fr_FR");
  {
    const EnvironmentVariable all("LC_ALL", "");
    EXPECT_EQ(NSLocale::currentLocale().identifier(), "de_DE");
  }
  const EnvironmentVariable all("LC_ALL", "ja_JP.UTF-8");
  EXPECT_EQ(NSLocale::currentLocale().identifier(), "ja_JP");
  NSLocale::setCurrentLocale("th_TH");
  EXPECT_EQ(NSLocale::currentLocale().identifier(), "th_TH");
  NSLocale::setCurrentLocale("");
  EXPECT_EQ(NSLocale::currentLocale().identifier(), "ja_JP");
}

// CLDR, languageInfo: Occitan is nearest to French, Mandarin to Chinese; Low German has nothing
// near. What names no language at all, however long or wild, is English.
TEST(Locale, IsAlwaysOneThatHasTexts) {
  for (const auto& [value, identifier] :
       {std::pair<std::string, const char*>{"oc_FR.UTF-8", "fr_FR"},
        {"nds_DE@euro", "en_DE"},
        {"cmn_TW", "zh_TW"},
        {"be_BY@latin", "be_BY"},
        {"xx_AT", "en_AT"},
        {"xx_YY", "en"},
        {"aaaaaaaaaaaa", "en"},
        {"root", "en"},
        {"/etc/passwd", "en"},
        {"de_DE/../../x", "de_DE"},
        {"@@@", "en_US_POSIX"},
        {std::string(200'000, 'a'), "en"},
        {"de_" + std::string(200'000, 'X'), "en"}}) {
    const EnvironmentVariable all("LC_ALL", value.c_str());
    EXPECT_EQ(NSLocale::currentLocale().identifier(), identifier) << value.substr(0, 40);
  }
  for (const auto& [setting, identifier] : {std::pair{"oc", "fr"}, {"pt-PT", "pt-PT"}, {"", "en"}})
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
  {
    const EnvironmentVariable occitan("LC_ALL", "oc_FR");
    EXPECT_EQ(languages(), PropertyList(PropertyList::Array{"oc_FR", "fr_FR"}));
  }
  const EnvironmentVariable list("LANGUAGE", "pt_BR:pt::sr@latin");
  EXPECT_EQ(languages(), PropertyList(PropertyList::Array{"pt_BR", "pt", "sr_Latn"}));
}

// CLDR, measurementData: Liberia has the system of the United States; the United Kingdom has one of
// its own, mostly metric. (Myanmar changed sides between editions.)
TEST(Locale, KnowsWhereLengthsAreMetric) {
  for (const auto& [identifier, metric] :
       {std::pair{"en_US", false}, {"en_LR", false}, {"en_GB", true}, {"de_DE", true}}) {
    EXPECT_EQ(NSLocale::localeWithLocaleIdentifier(identifier).usesMetricSystem(), metric)
        << identifier;
  }
}

// CLDR, script metadata: the script decides, named or usual.
TEST(Locale, KnowsWhereLinesBegin) {
  for (const auto& [identifier, isFromTheRight] : {std::pair{"de_DE", false},
                                                   {"ar", true},
                                                   {"he_IL", true},
                                                   {"ur_PK", true},
                                                   {"ja", false},
                                                   {"pa_Arab_PK", true},
                                                   {"pa_IN", false}}) {
    const auto direction = NSLocale::localeWithLocaleIdentifier(identifier).characterDirection();
    EXPECT_EQ(direction == NSLocaleLanguageDirection::RightToLeft, isFromTheRight) << identifier;
  }
}

TEST(Locale, KnowsWhatAnIdentifierIs) {
  for (const char* identifier : {"de_DE", "de-AT", "zh_Hant_TW", "en_US_POSIX"})
    EXPECT_TRUE(isKnownLocaleIdentifier(identifier)) << identifier;
  for (const std::string& identifier :
       {std::string(), std::string("xx_YY"), std::string("_DE"), std::string(5000, 'x')})
    EXPECT_FALSE(isKnownLocaleIdentifier(identifier)) << identifier;
}

}  // namespace
