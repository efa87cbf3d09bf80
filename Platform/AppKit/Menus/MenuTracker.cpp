#include "Platform/AppKit/Menus/MenuTracker.h"

#include <algorithm>
#include <utility>

#include "Platform/AppKit/Menus/MenuPlacement.h"

void MenuTracker::Delay::start(int64_t nanoseconds, std::function<void()> action) {
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  timer_ = loop.scheduleAt(loop.now() + nanoseconds, [this, action = std::move(action)] {
    timer_.reset();
    action();
  });
}

MenuTracker::~MenuTracker() { close(); }

// --- Opening and closing ------------------------------------------------------------------------

void MenuTracker::open(const std::shared_ptr<NSMenu>& menu, NSRect slot, MenuOpening opening,
                       NSUserInterfaceLayoutDirection direction) {
  close();
  slot_ = slot;
  direction_ = direction;
  isOpeningPress_ = opening == MenuOpening::Press;
  hasDraggedAway_ = false;
  isPointerInUse_ = false;
  openLevel(menu, nullptr);
  if (opening == MenuOpening::Request && isTracking()) moveHighlight(0, -1, 1);
}

void MenuTracker::openLevel(const std::shared_ptr<NSMenu>& menu,
                            const std::shared_ptr<NSMenuItem>& owner) {
  if (menu->tracker_ != nullptr) return;
  auto level = std::make_unique<Level>();
  level->menu = menu;
  level->owner = owner;
  level->panel = std::make_unique<MenuPanel>(menu, direction_);
  menu->tracker_ = this;
  levels_.push_back(std::move(level));
  const size_t depth = levels_.size() - 1;
  if (NSMenuDelegate* delegate = menu->delegate()) {
    NSRunLoop::guarded([&] { delegate->menuWillOpen(*menu); });
  }
  // The delegate may have closed it.
  if (!hasLevel(depth, *menu)) return;
  Level& opened = *levels_[depth];
  opened.panel->layOutIfNeeded();
  place(depth);
  opened.surface = screen_.makeSurface(*opened.panel);
  if (!opened.surface) {
    closeFrom(depth);
    return;
  }
  opened.panel->onViewWillGo = [this](NSView& view) {
    const std::shared_ptr<NSView> focused = focused_.lock();
    if (focused && focused->isDescendantOf(view)) focused_.reset();
  };
  opened.panel->onFirstResponder = [this](NSView& view) {
    setFocus(&view);
    stateChanged();
  };
  opened.panel->onNeedsFrame = [surface = opened.surface.get()] { surface->requestFrame(); };
  opened.surface->requestFrame();
  stateChanged();
}

void MenuTracker::closeFrom(size_t depth) {
  if (levels_.size() <= depth) return;
  submenuDelay_.cancel();
  headingDelay_.cancel();
  autoscrollDelay_.cancel();
  if (depth == 0) viewPointer_.cancel();
  viewPointer_.leave();
  setFocus(nullptr);
  while (levels_.size() > depth) {
    // Taken out first: a message may close the rest in turn.
    const std::unique_ptr<Level> level = std::move(levels_.back());
    levels_.pop_back();
    level->menu->tracker_ = nullptr;
    level->panel->onNeedsFrame = nullptr;
    level->panel->onViewWillGo = nullptr;
    level->panel->onFirstResponder = nullptr;
    level->surface.reset();
    level->panel.reset();
    if (NSMenuDelegate* delegate = level->menu->delegate()) {
      NSRunLoop::guarded([&] { delegate->menuDidClose(*level->menu); });
    }
  }
  if (levels_.empty()) {
    isOpeningPress_ = false;
    touchStart_.reset();
    typed_.clear();
    screen_.trackingEnded();
  }
  stateChanged();
}

void MenuTracker::place(size_t depth) {
  Level& level = *levels_[depth];
  MenuPanel& panel = *level.panel;
  const NSRect area = screen_.menuArea();
  if (depth == 0) {
    panel.setFrame(menuFrameBelow(slot_, panel.contentSize(), area, direction_));
    return;
  }
  const Level& parent = *levels_[depth - 1];
  NSRect row = parent.panel->rowFrame(*level.owner);
  row.origin.x += parent.panel->frame().origin.x;
  row.origin.y += parent.panel->frame().origin.y;
  // A submenu goes on to the side on which its parent opened.
  const bool isMirrored = direction_ == NSUserInterfaceLayoutDirection::RightToLeft;
  const bool prefersLeft = depth > 1 ? parent.isLeft : isMirrored;
  const SubmenuPlace found = submenuPlace(parent.panel->frame(), row, panel.contentSize(), area,
                                          prefersLeft, panel.topPadding());
  level.isLeft = found.isLeft;
  panel.setFrame(found.frame);
}

bool MenuTracker::openSubmenu(size_t depth, NSMenuItem& item) {
  submenuDelay_.cancel();
  const std::shared_ptr<NSMenu> submenu = item.submenu();
  if (!submenu || item.menu() == nullptr || !hasLevel(depth, *item.menu())) return false;
  const auto owner = std::static_pointer_cast<NSMenuItem>(item.shared_from_this());
  if (levels_.size() > depth + 1 && levels_[depth + 1]->owner == owner) return true;
  closeFrom(depth + 1);
  if (item.menu() == nullptr || !hasLevel(depth, *item.menu())) return false;
  openLevel(submenu, owner);
  return levels_.size() == depth + 2;
}

void MenuTracker::choose(const std::shared_ptr<NSMenuItem>& item) {
  const NSMenuItem::Action action = item->action();
  if (!action) return;
  close();
  NSRunLoop::guarded(action);
}

// --- Changes ------------------------------------------------------------------------------------

void MenuTracker::menuChanged(NSMenu& menu) {
  const std::optional<size_t> depth = levelOf(menu);
  if (!depth) return;
  levels_[*depth]->panel->setNeedsLayout();
  // A submenu whose row has gone, or belongs to another menu now, has no place any more.
  if (levels_.size() > *depth + 1) {
    const Level& next = *levels_[*depth + 1];
    if (next.owner->menu() != &menu || next.owner->submenu() != next.menu) closeFrom(*depth + 1);
  }
  if (!hasLevel(*depth, menu)) return;
  const auto highlighted = levels_[*depth]->highlighted;
  if (highlighted && highlighted->menu() != &menu) highlight(*depth, nullptr);
}

void MenuTracker::prepareFrame() {
  bool hasMoved = false;
  for (size_t depth = 0; depth < levels_.size(); ++depth) {
    if (!levels_[depth]->panel->layOutIfNeeded() && !hasMoved) continue;
    hasMoved = true;
    place(depth);
  }
  if (!hasMoved) return;
  // Another row may be under the pointer now.
  if (isPointerInUse_ && !viewPointer_.isPressing()) hover(pointer_, false);
  stateChanged();
}

void MenuTracker::highlight(size_t depth, NSMenuItem* item) {
  Level& level = *levels_[depth];
  if (level.highlighted.get() == item) return;
  setFocus(nullptr);
  level.highlighted =
      item != nullptr ? std::static_pointer_cast<NSMenuItem>(item->shared_from_this()) : nullptr;
  const std::shared_ptr<NSMenu> menu = level.menu;
  const std::shared_ptr<NSMenuItem> kept = level.highlighted;
  if (NSMenuDelegate* delegate = menu->delegate()) {
    NSRunLoop::guarded([&] { delegate->menuWillHighlightItem(*menu, kept.get()); });
  }
  stateChanged();
}

// --- Lookup -------------------------------------------------------------------------------------

bool MenuTracker::hasLevel(size_t depth, const NSMenu& menu) const {
  return depth < levels_.size() && levels_[depth]->menu.get() == &menu;
}

std::optional<size_t> MenuTracker::levelAt(NSPoint place) const {
  for (size_t depth = levels_.size(); depth-- > 0;) {
    if (NSPointInRect(place, levels_[depth]->panel->frame())) return depth;
  }
  return std::nullopt;
}

std::optional<size_t> MenuTracker::levelOf(const NSMenu& menu) const {
  for (size_t depth = 0; depth < levels_.size(); ++depth) {
    if (levels_[depth]->menu.get() == &menu) return depth;
  }
  return std::nullopt;
}

NSMenuItem* MenuTracker::highlightedItem(const NSMenu& menu) const {
  const std::optional<size_t> depth = levelOf(menu);
  return depth ? levels_[*depth]->highlighted.get() : nullptr;
}

NSView* MenuTracker::focusedView() const { return focused_.lock().get(); }

void MenuTracker::stateChanged() const {
  if (onStateChanged) onStateChanged();
}
