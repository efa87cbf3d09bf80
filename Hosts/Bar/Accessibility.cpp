#include "Hosts/Bar/Accessibility.h"

#include <dlfcn.h>

#include <cmath>
#include <utility>

#include "Platform/AppKit/Menus/MenuAccessibility.h"
#include "Platform/Foundation/Files/NSPathUtilities.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/Time/NSDate.h"

Accessibility::Accessibility(MenuBar& bar) : bar_(bar), status_([this] { load(); }) {
  bar_.onItemChanged = [this] { schedulePass(); };
  bar_.menus().tracker().onStateChanged = [this] { schedulePass(); };
}

Accessibility::~Accessibility() {
  bar_.onItemChanged = nullptr;
  bar_.menus().tracker().onStateChanged = nullptr;
}

void Accessibility::load() {
  const auto path = installationPrefix() / "lib" / "velmora5" / "VelmoraAccessibility.so";
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    NSLog(std::string("error: nothing for screen readers: ") + dlerror());
    return;
  }
  const auto make =
      reinterpret_cast<MakeAccessibleBarFunction>(dlsym(library, MakeAccessibleBarSymbol));
  if (make == nullptr) return;
  make(told_);
  told_->onPress = [this](uint64_t id) {
    presses_.push_back(id);
    schedulePass();
  };
  update();
}

void Accessibility::schedulePass() {
  if (!told_ || pass_) return;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  pass_ = loop.scheduleAt(loop.now(), [this] {
    pass_.reset();
    pass();
  });
}

void Accessibility::pass() {
  for (const uint64_t id : std::exchange(presses_, {}))
    press(id);
  update();
}

void Accessibility::press(uint64_t id) {
  if (id == AccessibleBar::ItemId) {
    bar_.setMenuOpen(!bar_.menus().isOpen());
  } else {
    pressAccessibleElement(bar_.menus().tracker(), id);
  }
}

void Accessibility::update() {
  told_->setItem(bar_.accessibleItem());
  told_->setMenu(accessibleMenu(bar_.menus().tracker()));
  scheduleMinute();
}

void Accessibility::scheduleMinute() {
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  minute_.reset();
  if (!bar_.menus().isOpen()) return;
  constexpr double Minute = 60;
  // The rows' own tick comes first.
  constexpr double AfterTick = 0.5;
  const double wait =
      Minute + AfterTick - std::fmod(NSDate::date().timeIntervalSince1970(), Minute);
  minute_ = loop.scheduleAt(loop.now() + std::llround(wait * 1e9), [this] {
    minute_.reset();
    update();
  });
}
