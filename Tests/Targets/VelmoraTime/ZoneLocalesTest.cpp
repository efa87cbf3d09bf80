#include "Targets/VelmoraTime/ZoneLocales.h"

#include <gtest/gtest.h>

#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

TEST(ZoneLocales, NameTheLocaleOfAZonesPeople) {
  struct Case {
    const char* zone;
    const char* locale;
  };
  for (const Case& sample : {Case{"Africa/Abidjan", "af"},
                             {"Europe/London", "en_GB"},
                             {"Asia/Tokyo", "ja"},
                             {"Pacific/Auckland", "en_AU"},
                             {"America/Montreal", "en_CA"},
                             {"Asia/Kathmandu", ""},
                             {"Zzz", ""},
                             {"", ""}}) {
    EXPECT_EQ(localeOfZone(sample.zone), sample.locale) << sample.zone;
  }
}

// CLDR: short names of zones are common only in some of a language's regions. Under "en_US" Tokyo
// has only an offset, under "ja" it is JST; New York has a name and needs none.
TEST(ZoneLocales, HelpOnlyWhereAnOffsetWouldStand) {
  const SimulatedTime time;
  struct Case {
    const char* locale;
    const char* zone;
    const char* zoneAfterwards;
    const char* helper;
  };
  for (const Case& sample : {Case{"en_US", "Asia/Tokyo", "Asia/Tokyo", "ja"},
                             {"ja", "Asia/Tokyo", "Asia/Tokyo", ""},
                             {"de_DE", "America/New_York", "America/New_York", "en_US"},
                             {"en_US", "Europe/Paris", "Europe/Paris", "en_GB"},
                             {"de_DE", "America/Montreal", "America/Toronto", "en_US"},
                             {"en_US", "Asia/Kathmandu", "Asia/Kathmandu", ""}}) {
    NSDateFormatter formatter;
    formatter.setLocale(NSLocale::localeWithLocaleIdentifier(sample.locale));
    std::string zone = sample.zone;
    const auto helper = localeForZoneAbbreviation(zone, formatter);
    EXPECT_EQ(helper ? helper->identifier() : "", sample.helper)
        << sample.zone << " in " << sample.locale;
    EXPECT_EQ(zone, sample.zoneAfterwards);
    EXPECT_EQ(formatter.timeZone().name(), sample.zoneAfterwards);
    if (!helper) continue;
    formatter.setLocale(*helper);
    const std::string name = formatter.stringFromDate(NSDate::date());
    EXPECT_EQ(name.find("GMT"), std::string::npos) << sample.zone << ": " << name;
  }
}

}  // namespace
