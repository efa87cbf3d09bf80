#include "Platform/Foundation/PropertyLists/BinaryPropertyList_p.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <string>

#include "Platform/Foundation/PropertyLists/XmlPropertyList_p.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

constexpr size_t TrailerSize = 32;

/// About what a value takes in memory besides its text or data, in bytes.
constexpr uint64_t ValueCost = 64;
/// What a list may unfold to besides `ValueCost` for each byte of the file. One whose values stand
/// in it once each has a byte or more for each of them, and so never comes to the bound.
constexpr uint64_t FreeCost = 1 << 20;

/// Dates count seconds from 2001-01-01 00:00 UTC.
constexpr double ReferenceDate = 978307200;

/// The upper half of an object's first byte.
enum Kind : unsigned {
  Simple = 0x0,
  Integer = 0x1,
  Real = 0x2,
  Date = 0x3,
  Data = 0x4,
  AsciiText = 0x5,
  Utf16Text = 0x6,
  Reference = 0x8,
  Array = 0xA,
  Dictionary = 0xD,
};

/// Its readers answer nothing for damage and null for a value to be dropped.
class Reader {
 public:
  Reader(std::string_view bytes, std::vector<std::string>& droppedKeys)
      : bytes_(bytes), droppedKeys_(droppedKeys), costLeft_(FreeCost + ValueCost * bytes.size()) {}

  std::optional<PropertyList> read() {
    if (!bytes_.starts_with("bplist00") || bytes_.size() < TrailerSize + 8) return std::nullopt;
    const size_t trailer = bytes_.size() - TrailerSize;
    offsetSize_ = number(trailer + 6, 1);
    referenceSize_ = number(trailer + 7, 1);
    count_ = number(trailer + 8, 8);
    const uint64_t top = number(trailer + 16, 8);
    table_ = number(trailer + 24, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8 ||
        table_ > trailer || count_ > (trailer - table_) / offsetSize_) {
      return std::nullopt;
    }
    auto value = object(top, 0);
    return value && !value->isNull() ? std::move(value) : std::nullopt;
  }

 private:
  uint64_t number(size_t position, size_t width) const {
    uint64_t value = 0;
    for (const char byte : bytes_.substr(position, width)) {
      value = value << 8 | static_cast<unsigned char>(byte);
    }
    return value;
  }

  /// Whether `count` items of `width` bytes lie between a position and the offset table.
  bool fits(uint64_t position, uint64_t count, uint64_t width) const {
    return position <= table_ && count <= (table_ - position) / width;
  }

  /// Counts what a value unfolds to; false beyond the bound.
  bool pay(uint64_t cost) {
    if (cost > costLeft_) return false;
    costLeft_ -= cost;
    return true;
  }

  /// `depth` counts the lists and dictionaries around the object.
  std::optional<PropertyList> object(uint64_t index, size_t depth) {
    if (index >= count_ || !pay(ValueCost)) return std::nullopt;
    uint64_t position = number(table_ + index * offsetSize_, offsetSize_);
    if (position >= table_) return std::nullopt;
    const uint64_t marker = number(position++, 1);
    const uint64_t low = marker & 0xF;
    switch (marker >> 4) {
      case Simple:
        if (low == 0x8) return PropertyList(false);
        if (low == 0x9) return PropertyList(true);
        return PropertyList();
      case Integer:
        return integer(position, low);
      case Real:
        return real(position, low);
      case Date:
        if (low != 3 || !fits(position, 8, 1)) return std::nullopt;
        return date(ReferenceDate + std::bit_cast<double>(number(position, 8)));
      case Reference:
        if (!fits(position, low + 1, 1) || depth >= MaximumPropertyListDepth) return std::nullopt;
        return PropertyList(
            PropertyList::Dictionary{{"CF$UID", static_cast<int64_t>(number(position, low + 1))}});
      default:
        return sized(static_cast<Kind>(marker >> 4), position, low, depth);
    }
  }

  std::optional<PropertyList> integer(uint64_t position, uint64_t sizeLog) const {
    if (sizeLog > 4 || !fits(position, 1, uint64_t{1} << sizeLog)) return std::nullopt;
    // Up to four bytes are unsigned, eight signed; sixteen hold what is beyond eight.
    if (sizeLog < 4)
      return PropertyList(static_cast<int64_t>(number(position, size_t{1} << sizeLog)));
    const auto value = static_cast<int64_t>(number(position + 8, 8));
    return number(position, 8) == 0 && value >= 0 ? PropertyList(value) : PropertyList();
  }

  static PropertyList date(double seconds) {
    const double whole = std::floor(seconds);
    if (!(whole >= EarliestXmlDate && whole <= LatestXmlDate)) return {};
    return PropertyList::Date{whole};
  }

  std::optional<PropertyList> real(uint64_t position, uint64_t sizeLog) const {
    if ((sizeLog != 2 && sizeLog != 3) || !fits(position, 1, uint64_t{1} << sizeLog)) {
      return std::nullopt;
    }
    const double value =
        sizeLog == 3
            ? std::bit_cast<double>(number(position, 8))
            : static_cast<double>(std::bit_cast<float>(static_cast<uint32_t>(number(position, 4))));
    return std::isnan(value) ? PropertyList() : PropertyList(value);
  }

  /// An object whose marker tells its length, or that an integer object with the length follows.
  std::optional<PropertyList> sized(Kind kind, uint64_t position, uint64_t length, size_t depth) {
    if (length == 0xF) {
      const uint64_t marker = number(position++, 1);
      const uint64_t width = uint64_t{1} << (marker & 0x3);
      if (marker >> 4 != Integer || !fits(position, width, 1)) return std::nullopt;
      length = number(position, width);
      position += width;
    }
    switch (kind) {
      case Data:
        if (!fits(position, length, 1) || !pay(length)) return std::nullopt;
        return PropertyList(
            PropertyList::Data(bytes_.begin() + static_cast<ptrdiff_t>(position),
                               bytes_.begin() + static_cast<ptrdiff_t>(position + length)));
      case AsciiText:
        if (!fits(position, length, 1) || !pay(length)) return std::nullopt;
        return PropertyList(xmlCharacters(bytes_.substr(position, length)));
      case Utf16Text:
        if (!fits(position, length, 2) || !pay(length * 2)) return std::nullopt;
        return PropertyList(xmlCharacters(stringFromUtf16(bytes_.substr(position, length * 2))));
      case Array:
        if (depth >= MaximumPropertyListDepth) return std::nullopt;
        return array(position, length, depth);
      case Dictionary:
        if (depth >= MaximumPropertyListDepth) return std::nullopt;
        return dictionary(position, length, depth);
      default:
        return std::nullopt;
    }
  }

  std::optional<PropertyList> item(uint64_t position, uint64_t index, size_t depth) {
    return object(number(position + index * referenceSize_, referenceSize_), depth + 1);
  }

  std::optional<PropertyList> array(uint64_t position, uint64_t length, size_t depth) {
    if (!fits(position, length, referenceSize_)) return std::nullopt;
    PropertyList::Array values;
    bool hasGap = false;
    for (uint64_t index = 0; index < length; ++index) {
      auto value = item(position, index, depth);
      if (!value) return std::nullopt;
      hasGap |= value->isNull();
      values.push_back(std::move(*value));
    }
    // Without a dropped value the others would be misplaced.
    return hasGap ? PropertyList() : PropertyList(std::move(values));
  }

  std::optional<PropertyList> dictionary(uint64_t position, uint64_t length, size_t depth) {
    if (!fits(position, length, 2 * referenceSize_)) return std::nullopt;
    PropertyList::Dictionary values;
    for (uint64_t index = 0; index < length; ++index) {
      const auto key = item(position, index, depth);
      auto value = item(position, length + index, depth);
      if (!key || key->string() == nullptr || !value) return std::nullopt;
      if (value->isNull()) {
        droppedKeys_.push_back(*key->string());
      } else {
        values.insert_or_assign(*key->string(), std::move(*value));
      }
    }
    return PropertyList(std::move(values));
  }

  std::string_view bytes_;
  std::vector<std::string>& droppedKeys_;
  uint64_t costLeft_;
  uint64_t offsetSize_ = 0;
  uint64_t referenceSize_ = 0;
  uint64_t count_ = 0;
  uint64_t table_ = 0;
};

}  // namespace

std::optional<PropertyList> binaryPropertyListWithData(std::string_view bytes,
                                                       std::vector<std::string>& droppedKeys) {
  return Reader(bytes, droppedKeys).read();
}
