#include "Platform/Foundation/Zones/IcuTimeZoneFormat_p.h"

#include <unicode/timezone.h>

#include <memory>

IcuTimeZoneFormat* IcuTimeZoneFormat::clone() const {
  return std::make_unique<IcuTimeZoneFormat>(*this).release();
}

icu::UnicodeString& IcuTimeZoneFormat::format(UTimeZoneFormatStyle style, const icu::TimeZone& zone,
                                              UDate date, icu::UnicodeString& text,
                                              UTimeZoneFormatTimeType* timeType) const {
  if (style != UTZFMT_STYLE_ZONE_ID_SHORT)
    return icu::TimeZoneFormat::format(style, zone, date, text, timeType);
  icu::UnicodeString name;
  const std::unique_ptr<icu::TimeZone> own(icu::TimeZone::createTimeZone(zone.getID(name)));
  return icu::TimeZoneFormat::format(style, *own, date, text, timeType);
}
