#include "Platform/Foundation/NSNotificationCenter.h"

#include <list>
#include <vector>

/// Observers are held weakly, so that the handles alone decide how long they last.
struct NSNotificationCenter::Registry {
  struct Observer {
    std::string name;
    NSNotificationHandler handler;
  };
  std::list<std::weak_ptr<Observer>> observers;
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
  auto observer = std::make_shared<Registry::Observer>(
      Registry::Observer{std::string(name), std::move(handler)});
  registry_->observers.push_back(observer);
  return NSObservation(observer);
}

void NSNotificationCenter::postNotification(std::string_view name,
                                            const PropertyList::Dictionary& userInfo) {
  // The posts of handlers, and registrations that they add or drop, must not upset this walk; a
  // handler dropped by an earlier one is not called.
  registry_->observers.remove_if([](const auto& observer) { return observer.expired(); });
  const std::vector<std::weak_ptr<Registry::Observer>> observers(registry_->observers.begin(),
                                                                 registry_->observers.end());
  const NSNotification notification{std::string(name), userInfo};
  for (const auto& candidate : observers) {
    const auto observer = candidate.lock();
    if (observer && observer->name == name) observer->handler(notification);
  }
}
