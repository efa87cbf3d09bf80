#include "Platform/AppKit/Events/NSApplication.h"

NSApplication& NSApplication::sharedApplication() {
  static NSApplication application;
  return application;
}

NSCurrentEvent::NSCurrentEvent(const NSEvent& event)
    : previous_(NSApplication::sharedApplication().currentEvent_) {
  NSApplication::sharedApplication().currentEvent_ = &event;
}

NSCurrentEvent::~NSCurrentEvent() { NSApplication::sharedApplication().currentEvent_ = previous_; }
