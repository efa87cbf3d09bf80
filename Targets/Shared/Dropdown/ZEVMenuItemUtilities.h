#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "Targets/Shared/Dropdown/StatInterfaceMenuButton.h"
#include "Targets/Shared/Dropdown/ZEVMenu.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"

// The rows that the dropdown is made of, of one size and style everywhere. Sizes are in whole
// points. Unless told otherwise a row's view is flipped, takes the highlight and follows the menu's
// width.

NSRect ZEVMakeRect(int64_t x, int64_t y, int64_t width, int64_t height);
NSSize ZEVMakeSize(int64_t width, int64_t height);

/// A menu whose rows reach its edges.
std::shared_ptr<ZEVMenu_Time> createMenu();

/// An empty row, 225 wide and 0 high.
std::shared_ptr<ZEVMenuItem_Time> createMenuItem();
/// A row with a view of the caller's, which is not resized.
std::shared_ptr<ZEVMenuItem_Time> createMenuItemWithView(
    const std::shared_ptr<StatInterfaceView_Time>& view);

// Rows that their owner keeps: with an owner (it may be null) and a key (it may be empty) the same
// row comes each time, whatever size is asked for. A width or height of 0 is 1.

/// A rule; takes no highlight.
std::shared_ptr<ZEVMenuItem_Time> createSpacerItem(ZEVMenu_Time* owner, std::string_view key,
                                                   int64_t width, int64_t height);
/// Empty space.
std::shared_ptr<ZEVMenuItem_Time> createFillerItem(ZEVMenu_Time* owner, std::string_view key,
                                                   int64_t width, int64_t height);
/// The title of a section, in capitals, as wide as it needs and 20 high.
std::shared_ptr<ZEVMenuItem_Time> createHeaderItem(ZEVMenu_Time* owner, std::string_view key,
                                                   std::string_view title);
/// The same, 23 high and as wide as told.
std::shared_ptr<ZEVMenuItem_Time> createMainHeaderItem(ZEVMenu_Time* owner, std::string_view key,
                                                       std::string_view title, int64_t width);

// Rows of one text, which is the item's `field` or `button`. A width of 0 is that of the text in
// bold with a margin.

std::shared_ptr<ZEVMenuItem_Time> createLabelMenuItem(std::string_view text, int64_t width,
                                                      int64_t height);
std::shared_ptr<ZEVMenuItem_Time> createCenteredLabel(std::string_view text, int64_t width,
                                                      int64_t height);
std::shared_ptr<ZEVMenuItem_Time> createTextMenuItem(std::string_view text, int64_t width,
                                                     int64_t height, bool bold);
/// A row that does `action` while `target` lives; with a null target it cannot be reached. One 15
/// points high is lit by a point more on either side.
std::shared_ptr<ZEVMenuItem_Time> createButtonMenuItem(std::string_view title,
                                                       const std::shared_ptr<NSObject>& target,
                                                       WENTargetItem_Time::Action action,
                                                       int64_t width, int64_t height);

// Bare fields for rows that their makers lay out. They follow the row's width.

std::shared_ptr<StatInterfaceTextFieldValue_Time> createValueField(NSTextAlignment alignment,
                                                                   NSRect frame);
std::shared_ptr<StatInterfaceTextFieldLabel_Time> createLabelField(NSTextAlignment alignment,
                                                                   NSRect frame);
