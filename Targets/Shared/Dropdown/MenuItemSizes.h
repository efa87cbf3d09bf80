#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Targets/Shared/Dropdown/ZEVMenuItem.h"

// Widths of rows with a label and a field, fitted to their texts. All in whole points; the answer
// is the width reached.

using ZEVMenuItems = std::vector<std::shared_ptr<ZEVMenuItem_Time>>;

/// Gives all labels the room of the longest and all fields `fieldWidth`. The width only grows along
/// the list, so early rows may be narrower than the last: the menu stretches them.
int64_t resizeMenuItems(const ZEVMenuItems& items, int64_t minimumWidth, int64_t fieldWidth);
int64_t resizeMenuItem(const std::shared_ptr<ZEVMenuItem_Time>& item, int64_t minimumWidth,
                       int64_t fieldWidth);

/// Gives label and field the room of their own texts. Never narrows the row.
int64_t resizeMenuItemToContent(const ZEVMenuItem_Time& item, int64_t minimumWidth);
