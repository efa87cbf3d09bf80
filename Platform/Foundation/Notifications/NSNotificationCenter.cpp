#include "Platform/Foundation/Notifications/NSNotificationCenter.h"

#include <list>
#include <vector>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"

namespace {

struct Observer {
  std::string name;
  NSNotificationHandler handler;
  bool isDropped = false;
};

}  // namespace

struct NSNotificationCenter::Registry {
  std::list<std::shared_ptr<Observer>> observers;
};

std::string NSNotification::textForKey(std::string_view key) const {
  const auto found = userInfo.find(key);
  const bool isText = found != userInfo.end() && found->second.string() != nullptr;
  return isText ? *found->second.string() : "";
}

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  static NSNotificationCenter center;
  return center;
}

NSNotificationCenter::NSNotificationCenter() : registry_(std::make_shared<Registry>()) {}

NSNotificationCenter::~NSNotificationCenter() = default;

NSObservation NSNotificationCenter::addObserver(std::string_view name,
                                                NSNotificationHandler handler) {
  auto& observers = registry_->observers;
  const auto entry = observers.insert(
      observers.end(), std::make_shared<Observer>(Observer{std::string(name), std::move(handler)}));
  // The observer goes with this function, after the list: what its handler holds may drop others.
  const auto drop = [registry = std::weak_ptr(registry_), observer = *entry, entry](void*) {
    observer->isDropped = true;
    if (const auto living = registry.lock()) living->observers.erase(entry);
  };
  return NSObservation(std::shared_ptr<void>(nullptr, drop));
}

void NSNotificationCenter::postNotification(std::string_view name,
                                            const PropertyList::Dictionary& userInfo) {
  // The posts of handlers, and registrations that they add or drop, must not upset this walk.
  const std::vector<std::shared_ptr<Observer>> observers(registry_->observers.begin(),
                                                         registry_->observers.end());
  const NSNotification notification{std::string(name), userInfo};
  for (const auto& observer : observers) {
    if (observer->isDropped || observer->name != name) continue;
    NSRunLoop::guarded([&] { observer->handler(notification); });
  }
}
