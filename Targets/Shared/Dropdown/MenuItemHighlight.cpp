#include "Targets/Shared/Dropdown/MenuItemHighlight.h"

#include <optional>
#include <vector>

#include "Platform/AppKit/Menus/NSMenu.h"
#include "Platform/Dispatch/Dispatch.h"
#include "Targets/Shared/Dropdown/ZEVMenuItem.h"

namespace {

/// How a row is to be lit.
struct Highlight {
  bool isHighlighted = false;
  std::optional<NSRect> customRect;
};

StatInterfaceView_Time* rowOf(const NSMenuItem& item) {
  return dynamic_cast<StatInterfaceView_Time*>(item.view().get());
}

enum class Neighbour { Previous, Next };

/// Where a highlight of some height stands in a neighbour that it reaches into by `points`.
NSRect rectInNeighbour(const StatInterfaceView_Time& row, Neighbour side, int64_t points,
                       double height) {
  const auto reach = static_cast<double>(points);
  // From the edge that both share: in the row before, that is the far one of a flipped view.
  const bool isAtFarEdge = row.isFlipped() == (side == Neighbour::Previous);
  return NSMakeRect(0, isAtFarEdge ? row.frame().size.height - reach : reach - height, 0, height);
}

std::vector<Highlight> highlightsFor(const NSMenu& menu, const NSMenuItem* item) {
  const auto& items = menu.itemArray();
  std::vector<Highlight> highlights(items.size());
  if (item == nullptr || item->menu() != &menu) return highlights;
  const size_t index = menu.indexOfItem(*item);
  const StatInterfaceView_Time* row = rowOf(*item);
  if (row == nullptr || !row->isHighlightable()) return highlights;
  highlights[index].isHighlighted = true;
  const auto* own = dynamic_cast<const ZEVMenuItem_Time*>(item);
  if (own == nullptr) return highlights;
  NSRect lit = row->bounds();
  if (own->useCustomHighlight()) {
    lit = own->customHighlightRect();
    highlights[index].customRect = lit;
  }
  const auto reachInto = [&](size_t neighbour, Neighbour side, int64_t points) {
    const StatInterfaceView_Time* view = rowOf(*items[neighbour]);
    if (view == nullptr || points == 0) return;
    highlights[neighbour].customRect = rectInNeighbour(*view, side, points, lit.size.height);
  };
  if (index > 0) reachInto(index - 1, Neighbour::Previous, own->previousItemHighlight());
  if (index + 1 < items.size()) reachInto(index + 1, Neighbour::Next, own->nextItemHighlight());
  return highlights;
}

void light(NSMenu& menu, const NSMenuItem* item) {
  const std::vector<Highlight> highlights = highlightsFor(menu, item);
  for (size_t index = 0; index < highlights.size(); ++index) {
    StatInterfaceView_Time* row = rowOf(*menu.itemArray()[index]);
    if (row == nullptr) continue;
    // Each asks for a redraw where it changes anything, so a moving highlight redraws two rows.
    row->setMenuItemHighlighted(highlights[index].isHighlighted);
    row->setCustomHighlightRect(highlights[index].customRect.has_value());
    if (highlights[index].customRect) row->setHighlightRect(*highlights[index].customRect);
  }
}

}  // namespace

void highlightMenuItem(NSMenu& menu, NSMenuItem* item) {
  const std::weak_ptr<NSObject> weakMenu = menu.weak_from_this();
  const std::weak_ptr<NSObject> weakItem =
      item != nullptr ? item->weak_from_this() : std::weak_ptr<NSObject>();
  dispatch_async(dispatch_get_main_queue(), [weakMenu, weakItem] {
    const auto keptMenu = std::static_pointer_cast<NSMenu>(weakMenu.lock());
    if (!keptMenu) return;
    light(*keptMenu, std::static_pointer_cast<NSMenuItem>(weakItem.lock()).get());
  });
}

void resetMenuItems(NSMenu& menu) { light(menu, nullptr); }

void menuItemResizeHightlight(ZEVMenuItem_Time& item) {
  item.setUseCustomHighlight(true);
  item.setCustomHighlightRect(NSMakeRect(0, -1, 0, 17));
  item.setPreviousItemHighlight(1);
  item.setNextItemHighlight(1);
}
