#include "Platform/Foundation/Zones/WindowsTimeZones.h"

#include <unicode/timezone.h>

#include <string>

std::optional<NSTimeZone> timeZoneWithWindowsName(std::string_view name) {
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString id;
  icu::TimeZone::getIDForWindowsID(
      icu::UnicodeString::fromUTF8({name.data(), static_cast<int32_t>(name.size())}), nullptr, id,
      status);
  std::string text;
  if (U_SUCCESS(status)) id.toUTF8String(text);
  return text.empty() ? std::nullopt : NSTimeZone::timeZoneWithName(text);
}
