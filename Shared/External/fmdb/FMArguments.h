#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/PropertyLists/PropertyList.h"
#include "Platform/Foundation/Time/NSDate.h"

/// A value that can be handed to a query by itself: whatever a `PropertyList` holds, an `NSDate`,
/// any whole number, or null. A lone array or dictionary is the whole list of arguments instead.
template <typename T>
concept FMBindable =
    !std::same_as<T, PropertyList::Array> && !std::same_as<T, PropertyList::Dictionary> &&
    (!std::is_pointer_v<T> || std::convertible_to<T, const char*>)&&(
        std::convertible_to<T, PropertyList> || std::is_arithmetic_v<T> ||
        std::same_as<T, NSDate> || std::same_as<T, std::nullptr_t> ||
        std::same_as<T, std::nullopt_t>);

template <FMBindable T>
PropertyList FMBoundValue(const T& value) {
  if constexpr (std::same_as<T, NSDate>) {
    return PropertyList::Date{value.timeIntervalSince1970()};
  } else if constexpr (std::same_as<T, std::nullptr_t> || std::same_as<T, std::nullopt_t>) {
    return {};
  } else if constexpr (std::is_integral_v<T> && !std::same_as<T, bool>) {
    return static_cast<int64_t>(value);
  } else if constexpr (std::is_floating_point_v<T>) {
    return static_cast<double>(value);
  } else if constexpr (std::is_pointer_v<T>) {
    return value != nullptr ? PropertyList(value) : PropertyList();
  } else {
    return value;
  }
}

template <FMBindable... Values>
PropertyList::Array FMArgumentArray(const Values&... values) {
  // Not from an initialiser list, which would copy each value once more.
  PropertyList::Array array;
  array.reserve(sizeof...(values));
  (array.push_back(FMBoundValue(values)), ...);
  return array;
}

/// The values of one call: by position, by name, or none. Refers to the caller's.
struct FMArguments {
  const PropertyList::Array* array = nullptr;
  const PropertyList::Dictionary* dictionary = nullptr;
};

/// A format's text with a placeholder for a bound value ("?") wherever the format names a value:
/// "%@", "%d", "%lld", "%f", "%s" and their like. "%%" becomes "%"; any other "%" stays.
std::string FMQueryFromFormat(std::string_view format);
