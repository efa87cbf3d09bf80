#include "Platform/Foundation/NSObject.h"

#include <map>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/RunLoop/RunLoopMoment_p.h"

struct NSObject::DelayedCalls {
  std::multimap<std::string, NSRunLoop::Timer, std::less<>> timers;
};

NSObject::NSObject() = default;

NSObject::~NSObject() = default;

void NSObject::performSelectorAfterDelay(std::string_view selector, double delay,
                                         std::function<void()> action) {
  if (!delayedCalls_) delayedCalls_ = std::make_unique<DelayedCalls>();
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  const auto entry = delayedCalls_->timers.emplace(std::string(selector), NSRunLoop::Timer());
  entry->second = loop.scheduleAt(momentAfter(loop.now(), nanosecondsFromSeconds(delay)),
                                  [this, entry, action = std::move(action)] {
                                    delayedCalls_->timers.erase(entry);
                                    // The action may drop the last reference to this object.
                                    const auto keep = weak_from_this().lock();
                                    action();
                                  });
}

void NSObject::cancelPreviousPerformRequests(std::string_view selector) {
  if (!delayedCalls_) return;
  const auto [first, last] = delayedCalls_->timers.equal_range(selector);
  delayedCalls_->timers.erase(first, last);
}
