#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// A translation with what it has places for, in their order. What is filled in may hold the sign
/// of a place itself.
std::string filledIn(std::string_view format, std::string_view place,
                     std::initializer_list<std::string> values);

/// "1 hour", "2 hours" by the keys of a table for one and for many, in the digits of the script
/// that `digitsModel` has its first digit from.
std::string translatedAmount(int64_t count, std::string_view one, std::string_view many,
                             std::string_view table, std::string_view digitsModel);
