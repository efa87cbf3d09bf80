#include "Hosts/Bar/BarMenus.h"

#include <algorithm>
#include <utility>

#include "Platform/AppKit/Events/NSApplication.h"
#include "Platform/AppKit/Menus/MenuPicture.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Process/UnusedPages.h"

namespace {

/// Whoever has just closed a menu may soon open it again, and shall not wait for its pages.
constexpr int64_t TimeToRest = 30'000'000'000;

PixelRect pixelRect(const MenuPicture::Part& part) {
  return {part.x, part.y, part.width, part.height};
}

}  // namespace

/// One menu's window, with what it shows.
class BarMenus::Surface : public MenuSurface {
 public:
  Surface(BarMenus& menus, MenuPanel& panel)
      : menus_(menus), panel_(panel), window_(menus.session_->makeWindow()) {
    menus_.surfaces_.push_back(this);
    takeScale();
  }
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;
  ~Surface() override { std::erase(menus_.surfaces_, this); }

  const MenuWindow* window() const { return window_.get(); }

  void takeScale() {
    const MenuSession& session = *menus_.session_;
    picture_.emplace(session.scale(), session.pixelGrid(), session.isComposited());
  }

  void requestFrame() override {
    // What a panel asks for while its frame is made is part of that frame.
    if (!isInFrame_) window_->requestFrame();
  }

  void setInFrame(bool isInFrame) { isInFrame_ = isInFrame; }

  void show() {
    if (!picture_->render(panel_, menus_.monitor_.frame.origin)) return;
    const PixelRect frame = pixelRect(picture_->frame());
    window_->present(frame, {picture_->pixels(), frame.width, frame.height, frame.width},
                     pixelRect(picture_->changed()));
  }

 private:
  BarMenus& menus_;
  MenuPanel& panel_;
  std::optional<MenuPicture> picture_;
  std::unique_ptr<MenuWindow> window_;
  bool isInFrame_ = false;
};

BarMenus::~BarMenus() { tracker_.close(); }

bool BarMenus::open(const Monitor& monitor, NSRect slotFrame, MenuOpening opening) {
  const auto extra = slot_.extra();
  std::shared_ptr<NSMenu> menu;
  if (extra) NSRunLoop::guarded([&] { menu = extra->menu(); });
  if (!menu) return false;
  tracker_.close();
  ending_.reset();
  resting_.reset();
  if (!session_ || monitor != monitor_) {
    session_.reset();
    session_ = display_.beginMenus(monitor, *this);
  }
  monitor_ = monitor;
  if (!session_) {
    NSLog("the menu cannot open: another program holds the pointer or the keyboard");
    return false;
  }
  top_ = slotFrame.origin.y + slotFrame.size.height;
  slot_.setMenuDown(true);
  tracker_.open(menu, slotFrame, opening,
                NSApplication::sharedApplication().userInterfaceLayoutDirection());
  return isOpen();
}

NSRect BarMenus::menuArea() const {
  // Not quite to the monitor's edges, where corners and shadows would be cut off.
  constexpr double Margin = 4;
  const NSRect& frame = monitor_.frame;
  return NSMakeRect(frame.origin.x + Margin, top_, frame.size.width - 2 * Margin,
                    frame.origin.y + frame.size.height - Margin - top_);
}

std::unique_ptr<MenuSurface> BarMenus::makeSurface(MenuPanel& panel) {
  if (!session_) return nullptr;
  return std::make_unique<Surface>(*this, panel);
}

void BarMenus::trackingEnded() {
  finger_.reset();
  slot_.setMenuDown(false);
  // On another pass: the session may be the caller.
  if (ending_) return;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  ending_ = loop.scheduleAt(loop.now(), [this, &loop] {
    ending_.reset();
    session_.reset();
    resting_ = loop.scheduleAt(loop.now() + TimeToRest, [] { returnUnusedPages(); });
  });
}

void BarMenus::menuFrameReady(MenuWindow& window) {
  const auto surface = [&] {
    const auto found = std::ranges::find(surfaces_, &window, &Surface::window);
    return found != surfaces_.end() ? *found : nullptr;
  };
  if (Surface* shown = surface()) shown->setInFrame(true);
  tracker_.prepareFrame();
  // That may have closed the menu.
  if (Surface* shown = surface()) {
    shown->show();
    shown->setInFrame(false);
  }
}

void BarMenus::menuScaleChanged() {
  for (Surface* surface : surfaces_) {
    surface->takeScale();
    surface->requestFrame();
  }
}

void BarMenus::menuPointerEvent(const PointerEvent& event) {
  switch (event.kind) {
    case PointerEvent::Kind::Enter:
      // It has come to where the pointer lies, which has not moved.
      break;
    case PointerEvent::Kind::Move:
      tracker_.pointerMoved(event.place, event.modifiers);
      break;
    case PointerEvent::Kind::Leave:
      tracker_.pointerLeft();
      break;
    case PointerEvent::Kind::Press:
      tracker_.pointerPressed(event.place, event.modifiers);
      break;
    case PointerEvent::Kind::Release:
      tracker_.pointerReleased(event.place);
      break;
    case PointerEvent::Kind::Cancel:
      tracker_.pointerCancelled();
      break;
    case PointerEvent::Kind::Scroll:
      tracker_.scrolled(event.place, event.scroll);
      break;
  }
}

void BarMenus::menuTouchEvent(const TouchEvent& event) {
  // One finger is enough for a menu.
  if (event.kind == TouchEvent::Kind::Down && !finger_) finger_ = event.finger;
  if (finger_ && event.finger != *finger_) return;
  const bool hasPlace =
      event.kind == TouchEvent::Kind::Down || event.kind == TouchEvent::Kind::Move;
  if (hasPlace) fingerPlace_ = event.place;
  switch (event.kind) {
    case TouchEvent::Kind::Down:
      tracker_.touchDown(event.place);
      break;
    case TouchEvent::Kind::Move:
      tracker_.touchMoved(event.place);
      break;
    case TouchEvent::Kind::Up:
      finger_.reset();
      tracker_.touchUp(fingerPlace_);
      break;
    case TouchEvent::Kind::Cancel:
      finger_.reset();
      tracker_.pointerCancelled();
      break;
  }
}

void BarMenus::menuKeyEvent(const NSEvent& event) {
  if (event.type == NSEventType::KeyDown) tracker_.keyPressed(event);
}

void BarMenus::menuSessionEnded() { tracker_.close(); }
