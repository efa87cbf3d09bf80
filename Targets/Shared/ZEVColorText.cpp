#include "Targets/Shared/ZEVColorText.h"

#include <array>
#include <cstdio>

#include "Platform/Foundation/Text/NSString.h"

std::string stringFromColor(const NSColor& color) {
  // A stored colour may hold any floats; the largest has 39 digits before its point.
  std::array<char, 192> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%.2f %.2f %.2f %.2f", color.redComponent(),
                    color.greenComponent(), color.blueComponent(), color.alphaComponent());
  return {text.data(), static_cast<size_t>(length)};
}

std::optional<NSColor> colorFromString(const PropertyList& value) {
  if (value.string() == nullptr) return std::nullopt;
  const auto pieces = componentsSeparatedByString(*value.string(), " ");
  if (pieces.size() != 4) return std::nullopt;
  return NSColor::colorWithDeviceRed(floatValue(pieces[0]), floatValue(pieces[1]),
                                     floatValue(pieces[2]), floatValue(pieces[3]));
}
