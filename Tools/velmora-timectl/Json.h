#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

using Json = nlohmann::ordered_json;

/// One line of JSON, keys in their order, numbers in the shortest form that reads back to the same
/// double; what is no number is null.
std::string jsonText(const Json& value);

/// Raises `UsageError`, naming `what`, for a text that is not JSON or holds a number that no
/// setting can.
PropertyList propertyListFromJson(std::string_view text, std::string_view what);

/// Data appears as base64 text and a date as its seconds since 1970.
Json jsonFromPropertyList(const PropertyList& value);
