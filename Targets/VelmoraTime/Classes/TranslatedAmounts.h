#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// "1 hour", "2 hours" by the keys of a table for one and for many, in the digits of the script
/// that `digitsModel` has its first digit from; Latin ones without a model.
std::string translatedAmount(int64_t count, std::string_view one, std::string_view many,
                             std::string_view table, std::string_view digitsModel = "");
