#pragma once

// For the platform's own sources only: this header shows ICU.

#include <unicode/tzfmt.h>

/// Names of zones for formatters that print an `IcuTimeZone`. ICU tells the short identifiers of
/// the locale data (pattern "V") of no zone but its own, so for these its own zone of the same name
/// is asked; everything else comes from the zone itself.
class IcuTimeZoneFormat : public icu::TimeZoneFormat {
 public:
  IcuTimeZoneFormat(const icu::Locale& locale, UErrorCode& status)
      : icu::TimeZoneFormat(locale, status) {}

  IcuTimeZoneFormat* clone() const override;

  using icu::TimeZoneFormat::format;
  icu::UnicodeString& format(UTimeZoneFormatStyle style, const icu::TimeZone& zone, UDate date,
                             icu::UnicodeString& text,
                             UTimeZoneFormatTimeType* timeType = nullptr) const override;
};
