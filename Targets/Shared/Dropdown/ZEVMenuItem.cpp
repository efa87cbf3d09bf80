#include "Targets/Shared/Dropdown/ZEVMenuItem.h"

#include <algorithm>
#include <cmath>

#include "Targets/Shared/Dropdown/StatInterfaceMenuButton.h"
#include "Targets/Shared/Dropdown/ZEVMenu.h"

ZEVMenuItem_Time::~ZEVMenuItem_Time() {
  for (const auto& item : menuItemsOrdered_)
    item->parentItem2_ = nullptr;
}

std::shared_ptr<StatInterfaceView_Time> ZEVMenuItem_Time::view() const {
  return std::dynamic_pointer_cast<StatInterfaceView_Time>(NSMenuItem::view());
}

std::shared_ptr<ZEVMenu_Time> ZEVMenuItem_Time::submenu() const {
  return std::dynamic_pointer_cast<ZEVMenu_Time>(NSMenuItem::submenu());
}

void ZEVMenuItem_Time::setAlternateView(std::shared_ptr<StatInterfaceView_Time> view) {
  alternateView_ = std::move(view);
}

std::shared_ptr<StatInterfaceView_Time> ZEVMenuItem_Time::shownView() const {
  const auto own = view();
  return own ? own : alternateView_;
}

void ZEVMenuItem_Time::setButton(std::shared_ptr<StatInterfaceMenuButton_Time> button) {
  button_ = std::move(button);
}

void ZEVMenuItem_Time::addSubMenuItem(const std::shared_ptr<ZEVMenuItem_Time>& item,
                                      std::string_view key) {
  if (key.empty()) return;
  if (item->parentItem2_ != nullptr) item->parentItem2_->removeItem(*item);
  item->parentItem2_ = this;
  item->key_ = key;
  if (const auto view = item->view()) {
    view->setBackgroundDisabled(true);
    view->setHighlightable(false);
    view->setAutoresizingMask(view->autoresizingMask() | NSViewWidthSizable);
    if (!item->alternateView_) item->alternateView_ = view;
    item->setView(nullptr);
  }
  menuItemsOrdered_.push_back(item);
  updateLayout();
}

std::shared_ptr<ZEVMenuItem_Time> ZEVMenuItem_Time::itemWithKey(std::string_view key) const {
  const auto found = std::ranges::find(menuItemsOrdered_, key, &ZEVMenuItem_Time::key_);
  return found != menuItemsOrdered_.end() ? *found : nullptr;
}

void ZEVMenuItem_Time::removeItemWithKey(std::string_view key) {
  if (const auto item = itemWithKey(key)) removeItem(*item);
}

void ZEVMenuItem_Time::detach(ZEVMenuItem_Time& item) {
  item.parentItem2_ = nullptr;
  if (item.alternateView_) item.alternateView_->removeFromSuperview();
}

void ZEVMenuItem_Time::removeItem(ZEVMenuItem_Time& item) {
  if (item.parentItem2_ != this) return;
  detach(item);
  std::erase_if(menuItemsOrdered_, [&](const auto& known) { return known.get() == &item; });
  updateLayout();
}

void ZEVMenuItem_Time::removeAllItems() {
  for (const auto& item : std::exchange(menuItemsOrdered_, {}))
    detach(*item);
  updateLayout();
}

void ZEVMenuItem_Time::updateLayout() {
  const auto container = view();
  if (!container) return;
  auto width = static_cast<int64_t>(container->frame().size.width);
  int64_t height = 0;
  for (const auto& item : menuItemsOrdered_) {
    if (!item->alternateView_) continue;
    const NSSize size = item->alternateView_->frame().size;
    width = std::max(width, static_cast<int64_t>(size.width));
    height += static_cast<int64_t>(size.height);
  }
  container->setFrameSize({static_cast<double>(width), static_cast<double>(height)});
  double y = 0;
  for (const auto& item : menuItemsOrdered_) {
    const auto& part = item->alternateView_;
    if (!part) continue;
    if (part->superview() == nullptr) container->addSubview(part);
    const double partHeight = part->frame().size.height;
    part->setFrame(NSMakeRect(0, y, container->frame().size.width, partHeight));
    y += partHeight;
  }
}

void ZEVMenuItem_Time::resizeToFieldValue() {
  constexpr float LeastWidth = 225;
  constexpr float Margin = 30;
  const auto row = view();
  if (!field_ || !row) return;
  const float width = std::max(LeastWidth, static_cast<float>(field_->textWidth()) + Margin);
  if (row->frame().size.width > width) return;
  row->setFrameSize({width, row->frame().size.height});
}

void ZEVMenuItem_Time::createSignature() {
  const auto row = view();
  const double width = row ? row->frame().size.width : 0;
  signature_ = title() + " - " + std::to_string(std::llrint(width));
}
