#include "Hosts/X11/XSettings.h"

#include <optional>

namespace {

class Reader {
 public:
  Reader(std::span<const uint8_t> bytes, bool isMostSignificantByteFirst)
      : bytes_(bytes), isMostSignificantByteFirst_(isMostSignificantByteFirst) {}

  /// Null behind the end, then and from then on.
  std::optional<uint32_t> number(size_t size) {
    const auto bytes = take(size);
    if (bytes.size() < size) return std::nullopt;
    uint32_t value = 0;
    for (size_t index = 0; index < size; ++index)
      value = value << 8 | bytes[isMostSignificantByteFirst_ ? index : size - 1 - index];
    return value;
  }

  /// Shorter than asked for at the end. Texts are filled up to a multiple of four bytes.
  std::span<const uint8_t> text(size_t size) {
    const auto text = take(size);
    take((4 - size % 4) % 4);
    return text;
  }

 private:
  std::span<const uint8_t> take(size_t size) {
    const auto taken = bytes_.first(std::min(size, bytes_.size()));
    bytes_ = bytes_.subspan(taken.size());
    return taken;
  }

  std::span<const uint8_t> bytes_;
  bool isMostSignificantByteFirst_;
};

}  // namespace

std::map<std::string, int32_t> readXSettings(std::span<const uint8_t> property) {
  enum Type : uint32_t { Integer = 0, String = 1, Color = 2 };
  std::map<std::string, int32_t> settings;
  constexpr size_t HeaderSize = 8;
  if (property.size() < HeaderSize) return settings;
  Reader reader(property.subspan(HeaderSize), property[0] != 0);
  uint32_t count = reader.number(4).value_or(0);
  for (; count > 0; --count) {
    const auto type = reader.number(1);
    reader.number(1);
    const auto nameLength = reader.number(2);
    if (!nameLength) break;
    const auto name = reader.text(*nameLength);
    reader.number(4);  // When it was last changed.
    const auto value = reader.number(4);
    if (!value || *type > Color) break;
    if (*type == Integer)
      settings[std::string(name.begin(), name.end())] = static_cast<int32_t>(*value);
    if (*type == String) reader.text(*value);
    if (*type == Color) reader.number(4);
  }
  return settings;
}
