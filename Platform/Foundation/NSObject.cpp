#include "Platform/Foundation/NSObject.h"

#include <map>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/RunLoop/RunLoopMoment_p.h"

struct NSObject::DelayedCalls {
  std::multimap<std::string, NSRunLoop::TimerId, std::less<>> timers;
};

NSObject::NSObject() = default;

NSObject::~NSObject() {
  if (!delayedCalls_) return;
  for (const auto& [selector, timer] : delayedCalls_->timers)
    NSRunLoop::mainRunLoop().cancel(timer);
}

void NSObject::performSelectorAfterDelay(std::string_view selector, double delay,
                                         std::function<void()> action) {
  if (!delayedCalls_) delayedCalls_ = std::make_unique<DelayedCalls>();
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  const auto entry = delayedCalls_->timers.emplace(std::string(selector), 0);
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
  for (auto entry = first; entry != last; ++entry)
    NSRunLoop::mainRunLoop().cancel(entry->second);
  delayedCalls_->timers.erase(first, last);
}
