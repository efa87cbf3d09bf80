#include "Platform/AppKit/Menus/NSMenuItem.h"

#include <utility>

#include "Platform/AppKit/Menus/MenuTracker.h"
#include "Platform/AppKit/Menus/NSMenu.h"

NSMenuItem::~NSMenuItem() {
  if (submenu_) submenu_->parentItem_ = nullptr;
}

void NSMenuItem::setView(std::shared_ptr<NSView> view) {
  view_ = std::move(view);
  if (menu_ != nullptr) menu_->itemsChanged();
}

void NSMenuItem::setSubmenu(std::shared_ptr<NSMenu> submenu) {
  if (submenu == submenu_) return;
  if (submenu && submenu->parentItem_ != nullptr) submenu->parentItem_->setSubmenu(nullptr);
  if (submenu_) submenu_->parentItem_ = nullptr;
  submenu_ = std::move(submenu);
  if (submenu_) submenu_->parentItem_ = this;
  if (menu_ != nullptr) menu_->itemsChanged();
}

bool NSMenuItem::isEnabled() const { return action_ || submenu_ || hasActingView_; }

bool NSMenuItem::isHighlighted() const {
  return menu_ != nullptr && menu_->tracker_ != nullptr &&
         menu_->tracker_->highlightedItem(*menu_) == this;
}
