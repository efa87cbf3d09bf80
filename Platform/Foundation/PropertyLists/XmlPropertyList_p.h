#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// Reads a property list in its XML form, in UTF-8, as `propertyListWithData` tells. Nothing for
/// text that is not well-formed, is no property list or nests too deep. An element that is unknown,
/// or holds what it cannot hold, is a value to be dropped.
std::optional<PropertyList> xmlPropertyListWithData(std::string_view text,
                                                    std::vector<std::string>& droppedKeys);

/// Writes the XML form. Reals read back to the same double; null values and the characters that XML
/// has no form for are left out.
std::string xmlDataWithPropertyList(const PropertyList& value);

/// Text in UTF-8 without the characters that XML has no form for: control characters other than
/// tab and line ends, U+FFFE and U+FFFF.
std::string xmlCharacters(std::string_view text);

/// The dates that the XML form can hold, with four digits for the year: seconds since 1970.
constexpr double EarliestXmlDate = -62'135'596'800;
constexpr double LatestXmlDate = 253'402'300'799;
