#include "Targets/VelmoraTime/ZoneLocales.h"

#include <gtest/gtest.h>

#include "Platform/Foundation/Zones/NSTimeZone.h"
#include "Tests/Platform/Support/CaseTable.h"
#include "Tests/Targets/SimulatedTime.h"

namespace {

TEST(ZoneLocales, HelpOnlyWhereAnOffsetWouldStand) {
  const SimulatedTime time;
  for (const auto& [locale, zone, ofItsPeople, zoneAfterwards, helping] :
       casesIn<std::string, std::string, std::string, std::string, std::string>(
           "Targets/VelmoraTime/Cases/zone-locales.txt")) {
    SCOPED_TRACE(zone + " in " + locale);
    EXPECT_EQ(localeOfZone(zone), ofItsPeople);
    NSDateFormatter formatter;
    formatter.setLocale(NSLocale::localeWithLocaleIdentifier(locale));
    std::string formatted = zone;
    const auto helper = localeForZoneAbbreviation(formatted, formatter);
    EXPECT_EQ(helper ? helper->identifier() : "", helping);
    EXPECT_EQ(formatted, zoneAfterwards);
    EXPECT_EQ(formatter.timeZone().name(), zoneAfterwards);
    if (!helper) continue;
    formatter.setLocale(*helper);
    EXPECT_EQ(formatter.stringFromDate(NSDate::date()).find("GMT"), std::string::npos);
  }
  for (const auto& [zone, locale] :
       {std::pair{"Africa/Abidjan", "af"}, {"Pacific/Saipan", "en_GU"}, {"Zzz", ""}, {"", ""}})
    EXPECT_EQ(localeOfZone(zone), locale) << "at the table's ends";
}

}  // namespace
