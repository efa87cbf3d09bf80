#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "Targets/Shared/Dropdown/ZEVMenuItem.h"

// Lines of the sun panel, 320 by 16: a name and two values behind it, in the item's `label`,
// `field` and `value2`. The items stand in no menu: the line is their `alternateView`, with its
// lower edge at `y`.

/// A line with a small picture at its beginning and without values as yet.
std::shared_ptr<ZEVMenuItem_Time> createTripleSunRow(std::string_view label,
                                                     std::string_view imageName, int64_t y);

/// The titles of columns.
std::shared_ptr<ZEVMenuItem_Time> createTripleSunHeaderRow(std::string_view label,
                                                           std::string_view field,
                                                           std::string_view value2, int64_t y);
