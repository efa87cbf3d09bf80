#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Operations on text, which is UTF-8 everywhere. Lengths and positions count code points, so that
/// no character is ever cut in two.

/// The number of code points.
size_t stringLength(std::string_view text);

/// The first `count` code points, or all of a shorter text.
std::string substringToIndex(std::string_view text, size_t count);

/// Everything between the first and the last code point of `text`. A text of one code point has no
/// last one behind the first: that raises `std::out_of_range`.
std::string stringByDroppingFirstAndLast(std::string_view text);

/// Case mapping without a language's special rules.
std::string lowercaseString(std::string_view text);
std::string uppercaseString(std::string_view text);

/// Text with whatever is no UTF-8 in it replaced by U+FFFD.
std::string validUtf8(std::string_view text);

/// Text from UTF-16 in big-endian bytes.
std::string stringFromUtf16(std::string_view bytes);

/// The pieces between the separators, empty ones included; a text without one is one piece.
std::vector<std::string> componentsSeparatedByString(std::string_view text,
                                                     std::string_view separator);

/// `text` with every occurrence of `target` replaced, from left to right.
std::string stringByReplacingOccurrences(std::string_view text, std::string_view target,
                                         std::string_view replacement);

/// Reads a number at the start of the text, behind blanks; 0 if there is none. Digits of every
/// script count in `integerValue`. Values beyond the type's range stop at its end.
int64_t integerValue(std::string_view text);
double doubleValue(std::string_view text);
float floatValue(std::string_view text);

/// A number in ASCII digits, written in those of the script that `model` has its first digit from;
/// as it is where `model` has none.
std::string stringWithDigitsOf(std::string_view number, std::string_view model);
