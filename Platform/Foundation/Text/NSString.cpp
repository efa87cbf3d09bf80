#include "Platform/Foundation/Text/NSString.h"

#include <glib.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>

namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// The byte position of code point `index`, or the text's size.
size_t byteIndex(std::string_view text, size_t index) {
  for (size_t position = 0; position < text.size(); ++position) {
    if (isContinuation(text[position])) continue;
    if (index == 0) return position;
    --index;
  }
  return text.size();
}

std::string toUtf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

}  // namespace

size_t stringLength(std::string_view text) {
  size_t length = 0;
  for (const char byte : text)
    length += isContinuation(byte) ? 0 : 1;
  return length;
}

std::string substringToIndex(std::string_view text, size_t count) {
  return std::string(text.substr(0, byteIndex(text, count)));
}

std::string stringByDroppingFirstAndLast(std::string_view text) {
  const size_t length = stringLength(text);
  if (length < 2) {
    throw std::out_of_range("\"" + std::string(text) +
                            "\" is too short to drop its first and last character");
  }
  const size_t begin = byteIndex(text, 1);
  return std::string(text.substr(begin, byteIndex(text, length - 1) - begin));
}

std::string lowercaseString(std::string_view text) {
  return toUtf8(icu::UnicodeString::fromUTF8(text).toLower(icu::Locale::getRoot()));
}

std::string uppercaseString(std::string_view text) {
  return toUtf8(icu::UnicodeString::fromUTF8(text).toUpper(icu::Locale::getRoot()));
}

std::string validUtf8(std::string_view text) { return toUtf8(icu::UnicodeString::fromUTF8(text)); }

std::string stringFromUtf16(std::string_view bytes) {
  icu::UnicodeString text;
  for (size_t index = 0; index + 1 < bytes.size(); index += 2) {
    text.append(static_cast<char16_t>(static_cast<unsigned char>(bytes[index]) << 8 |
                                      static_cast<unsigned char>(bytes[index + 1])));
  }
  return toUtf8(text);
}

std::vector<std::string> componentsSeparatedByString(std::string_view text,
                                                     std::string_view separator) {
  std::vector<std::string> pieces;
  size_t begin = 0;
  while (true) {
    const size_t end = separator.empty() ? std::string_view::npos : text.find(separator, begin);
    pieces.emplace_back(text.substr(begin, end - begin));
    if (end == std::string_view::npos) return pieces;
    begin = end + separator.size();
  }
}

std::string stringByReplacingOccurrences(std::string_view text, std::string_view target,
                                         std::string_view replacement) {
  std::string result;
  size_t begin = 0;
  while (true) {
    const size_t end = target.empty() ? std::string_view::npos : text.find(target, begin);
    result.append(text.substr(begin, end - begin));
    if (end == std::string_view::npos) return result;
    result.append(replacement);
    begin = end + target.size();
  }
}

int64_t integerValue(std::string_view text) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto length = static_cast<int32_t>(text.size());
  int32_t position = 0;
  UChar32 character = 0;
  const auto next = [&] {
    if (position >= length) return false;
    U8_NEXT(bytes, position, length, character);
    return true;
  };

  bool more = next();
  while (more && u_isspace(character))
    more = next();
  const bool negative = more && character == '-';
  if (more && (character == '-' || character == '+')) more = next();

  constexpr int64_t Maximum = std::numeric_limits<int64_t>::max();
  int64_t value = 0;
  for (; more; more = next()) {
    const int32_t digit = character < 0 ? -1 : u_charDigitValue(character);
    if (digit < 0) break;
    if (value > (Maximum - digit) / 10) {
      return negative ? std::numeric_limits<int64_t>::min() : Maximum;
    }
    value = value * 10 + digit;
  }
  return negative ? -value : value;
}

double doubleValue(std::string_view text) {
  const size_t begin = text.find_first_not_of(" \t\r\n");
  if (begin == std::string_view::npos) return 0;
  text.remove_prefix(begin);
  if (text.starts_with('+')) text.remove_prefix(1);
  // The library also reads names such as "inf" and "nan", which are no numbers here.
  const size_t first = text.starts_with('-') ? 1 : 0;
  if (first >= text.size() || (text[first] != '.' && (text[first] < '0' || text[first] > '9'))) {
    return 0;
  }
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    // Too far from 0 or too near to it: the reader above does not tell which.
    constexpr double Maximum = std::numeric_limits<double>::max();
    const std::string number(text.data(), end);
    return std::clamp(g_ascii_strtod(number.c_str(), nullptr), -Maximum, Maximum);
  }
  return error == std::errc() ? value : 0;
}

float floatValue(std::string_view text) {
  const double value = doubleValue(text);
  constexpr double Maximum = std::numeric_limits<float>::max();
  if (value > Maximum) return std::numeric_limits<float>::max();
  if (value < -Maximum) return -std::numeric_limits<float>::max();
  return static_cast<float>(value);
}

std::string stringWithDigitsOf(std::string_view number, std::string_view model) {
  // The decimal digits of a script stand in one row, from its zero on.
  UChar32 zero = '0';
  const icu::UnicodeString modelText = icu::UnicodeString::fromUTF8(model);
  for (int32_t index = 0; index < modelText.length(); index = modelText.moveIndex32(index, 1)) {
    const UChar32 character = modelText.char32At(index);
    const int32_t digit = u_charDigitValue(character);
    if (digit < 0) continue;
    zero = character - digit;
    break;
  }
  icu::UnicodeString text;
  for (const char character : number) {
    const bool isDigit = character >= '0' && character <= '9';
    text.append(isDigit ? zero + (character - '0') : static_cast<UChar32>(character));
  }
  return toUtf8(text);
}
