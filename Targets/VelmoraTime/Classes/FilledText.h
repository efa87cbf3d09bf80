#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

/// A translation with what it has places for, in their order: `place` is the sign of a place. What
/// is filled in may hold that sign itself. Places without a value stay empty.
std::string filledIn(std::string_view format, std::string_view place,
                     std::initializer_list<std::string_view> values);
