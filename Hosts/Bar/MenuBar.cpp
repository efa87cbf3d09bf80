#include "Hosts/Bar/MenuBar.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "Platform/AppKit/Views/NSScreen.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/Time/NSDate.h"

namespace {

constexpr double BarHeight = NSMenuExtra::Height;

uint32_t pixelOf(const NSColor& color) {
  const auto part = [](double value) { return static_cast<uint32_t>(std::lround(value * 255)); };
  return 0xFF000000 | part(color.redComponent()) << 16 | part(color.greenComponent()) << 8 |
         part(color.blueComponent());
}

/// The bar's last row of pixels, which sets it off from what is below it.
NSColor hairlineColor(bool isDark) {
  const NSColor bar = menuBarBackgroundColor(isDark);
  const double rest = 1 - (isDark ? 0.45 : 0.14);
  return NSColor::colorWithDeviceRed(bar.redComponent() * rest, bar.greenComponent() * rest,
                                     bar.blueComponent() * rest, 1);
}

std::string joined(const std::vector<Monitor>& monitors) {
  std::string names;
  for (const Monitor& monitor : monitors)
    names += (names.empty() ? "" : ", ") + monitor.name;
  return names;
}

}  // namespace

MenuBar::MenuBar(Display& display, std::optional<std::string> wantedMonitor)
    : display_(display), wantedMonitor_(std::move(wantedMonitor)) {
  slot_.onNeedsDisplay = [this] { requestUpdate(); };
  slot_.onLengthChanged = [this] { requestUpdate(); };
  slot_.onMenuShouldClose = [this] { menus_.close(); };
  display_.onMonitorsChanged = [this] { followMonitors(); };
}

MenuBar::~MenuBar() {
  display_.onMonitorsChanged = nullptr;
  menus_.close();
  slot_.setExtra(nullptr);
}

std::optional<Monitor> MenuBar::chooseMonitor() {
  const std::vector<Monitor> monitors = display_.monitors();
  if (monitors.empty()) return std::nullopt;
  const auto named = std::ranges::find_if(
      monitors, [&](const Monitor& monitor) { return monitor.name == wantedMonitor_; });
  if (named != monitors.end()) return *named;
  const auto primary = std::ranges::find_if(monitors, &Monitor::isPrimary);
  const Monitor& chosen = primary != monitors.end() ? *primary : monitors.front();
  if (wantedMonitor_ && !hasToldOfWaiting_) {
    NSLog("no monitor has the name \"" + *wantedMonitor_ + "\" (there are: " + joined(monitors) +
          "); the bar waits for it on " + chosen.name);
    hasToldOfWaiting_ = true;
  }
  return chosen;
}

void MenuBar::show() {
  const std::optional<Monitor> monitor = chooseMonitor();
  if (monitor) {
    updateScreens(*monitor);
  } else {
    NSScreen::setScreens({});
  }
  if (!monitor) {
    menus_.close();
    surface_.reset();
    slot_.setMenuDown(false);
    return;
  }
  if (!lock_.take(monitor->name)) {
    surface_.reset();
    throw std::runtime_error("a bar is on the monitor " + monitor->name + " already");
  }
  if (*monitor != std::exchange(monitor_, *monitor)) menus_.close();
  if (surface_) {
    surface_->moveTo(*monitor);
  } else {
    picture_.forget();
    surface_ = display_.makeBar(*monitor, static_cast<int>(BarHeight), *this);
  }
  surfaceChanged();
}

void MenuBar::followMonitors() {
  try {
    show();
  } catch (const std::runtime_error& error) {
    NSLog(std::string("error: ") + error.what());
  }
}

void MenuBar::updateScreens(const Monitor& first) const {
  std::vector<NSScreen> screens;
  for (const Monitor& monitor : display_.monitors()) {
    // Frames have y upwards from the lower left corner of the first screen.
    const NSRect& origin = first.frame;
    const NSRect& frame = monitor.frame;
    const double bottom = origin.origin.y + origin.size.height;
    const NSScreen screen{
        NSMakeRect(frame.origin.x - origin.origin.x, bottom - (frame.origin.y + frame.size.height),
                   frame.size.width, frame.size.height),
        monitor.scale};
    screens.insert(monitor == first ? screens.begin() : screens.end(), screen);
  }
  NSScreen::setScreens(std::move(screens));
}

void MenuBar::redraw() { surfaceChanged(); }

void MenuBar::surfaceChanged() {
  if (!surface_ || surface_->width() <= 0) return;
  takeBackground();
  surface_->setBackground(background_);
  picture_.forget();
  requestUpdate();
}

void MenuBar::takeBackground() {
  const bool isDark = isMenuBarDark();
  const auto rows = static_cast<size_t>(std::lround(BarHeight * surface_->scale()));
  background_.assign(rows, pixelOf(menuBarBackgroundColor(isDark)));
  background_.back() = pixelOf(hairlineColor(isDark));
}

void MenuBar::requestUpdate() {
  // What the item asks for while it draws is part of that very drawing.
  if (!isDrawing_ && surface_) surface_->requestFrame();
}

void MenuBar::frameReady() {
  if (!surface_ || surface_->width() <= 0 || slot_.isStarting()) return;
  isDrawing_ = true;
  // A clock without seconds draws the same for most of its ticks: that need not wake the display.
  const bool hasChanged = picture_.render(
      slot_, {surface_->width(), surface_->scale(), surface_->pixelGrid()}, background_);
  isDrawing_ = false;
  if (hasChanged) surface_->presentItem(picture_.pixels(), picture_.frame().x, picture_.changed());
  updateAccessibleItem();
}

void MenuBar::updateAccessibleItem() {
  if (!slot_.extra()) return;
  AccessibleItem item = accessibleItem_;
  updateName(item);
  item.frame = itemFrame();
  item.barFrame = {monitor_.frame.origin, {surface_->width(), BarHeight}};
  item.pixelsPerPoint = display_.hasCommonPlaces() ? std::optional(monitor_.scale) : std::nullopt;
  if (item.name.empty() || item == accessibleItem_) return;
  accessibleItem_ = std::move(item);
  if (onItemChanged) onItemChanged();
}

void MenuBar::updateName(AccessibleItem& item) {
  constexpr double Minute = 60;
  const double minute = std::floor(NSDate::date().timeIntervalSince1970() / Minute);
  if (minute == nameMinute_) return;
  item.description = slot_.extra()->AXTitle();
  const std::string words = picture_.words();
  // Until the item has started it has no words.
  if (!words.empty()) nameMinute_ = minute;
  item.name = words.empty() ? item.description : words;
}

bool MenuBar::isOnItem(NSPoint place) const {
  // To the very corner, into which a pointer can be thrown.
  return place.x >= picture_.leftEdge() && place.y < BarHeight;
}

NSPoint MenuBar::onDesktop(NSPoint place) const {
  const NSPoint& origin = monitor_.frame.origin;
  return {origin.x + place.x, origin.y + place.y};
}

NSRect MenuBar::itemFrame() const {
  // To the bar's end, as the area for clicks.
  const double left = picture_.leftEdge();
  return {onDesktop({left, 0}), {surface_->width() - left, BarHeight}};
}

bool MenuBar::openMenu(MenuOpening opening) {
  if (!surface_ || surface_->width() <= 0) return false;
  return menus_.open(monitor_, itemFrame(), opening);
}

bool MenuBar::setMenuOpen(bool isOpen) {
  if (!isOpen) {
    menus_.close();
    return false;
  }
  return menus_.isOpen() || openMenu(MenuOpening::Request);
}

void MenuBar::press() {
  // Without a menu the item is down as long as the press.
  if (slot_.extra() && !openMenu(MenuOpening::Press)) slot_.setMenuDown(true);
}

void MenuBar::pointerEvent(const PointerEvent& event) {
  if (menus_.isOpen()) {
    PointerEvent onDesktopNow = event;
    onDesktopNow.place = onDesktop(event.place);
    // The menu takes the pointer away from the bar, which is no end of the press.
    const bool isTaken =
        event.kind == PointerEvent::Kind::Leave || event.kind == PointerEvent::Kind::Cancel;
    if (!isTaken) menus_.pointerEvent(onDesktopNow);
    return;
  }
  const bool isPrimary = event.button == PointerButton::Primary;
  switch (event.kind) {
    case PointerEvent::Kind::Press:
      if (isPrimary && isOnItem(event.place)) press();
      break;
    case PointerEvent::Kind::Release:
      if (isPrimary) slot_.setMenuDown(false);
      break;
    case PointerEvent::Kind::Cancel:
      slot_.setMenuDown(false);
      break;
    case PointerEvent::Kind::Enter:
    case PointerEvent::Kind::Move:
    case PointerEvent::Kind::Leave:
    case PointerEvent::Kind::Scroll:
      break;
  }
}

void MenuBar::touchEvent(const TouchEvent& event) {
  if (menus_.isOpen()) {
    TouchEvent onDesktopNow = event;
    onDesktopNow.place = onDesktop(event.place);
    menus_.touchEvent(onDesktopNow);
    return;
  }
  switch (event.kind) {
    case TouchEvent::Kind::Down:
      if (isOnItem(event.place)) press();
      break;
    case TouchEvent::Kind::Up:
    case TouchEvent::Kind::Cancel:
      slot_.setMenuDown(false);
      break;
    case TouchEvent::Kind::Move:
      break;
  }
}

void MenuBar::surfaceClosed() {
  // Called by the surface itself, which can go only after its call.
  closed_ = std::move(surface_);
  NSRunLoop::mainRunLoop().performBlock([this] {
    closed_.reset();
    followMonitors();
  });
}
