#include "Targets/VelmoraTime/Calendar/CalendarColors.h"

#include <charconv>
#include <cstdint>
#include <string>

#include "Platform/Foundation/Text/NSString.h"

std::optional<NSColor> colorOfCalendar(const EKCalendar& calendar) {
  if (calendar.color()) return calendar.color();
  constexpr size_t Digits = 8;
  const std::string text = stringByReplacingOccurrences(calendar.colorString(), "#", "");
  uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
  if (text.size() != Digits || error != std::errc() || stop != end) return std::nullopt;
  const auto part = [value](int shift) { return ((value >> shift) & 0xFF) / 255.0; };
  return NSColor::colorWithDeviceRed(part(24), part(16), part(8), part(0));
}
