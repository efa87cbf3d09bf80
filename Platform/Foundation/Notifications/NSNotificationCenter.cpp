#include "Platform/Foundation/Notifications/NSNotificationCenter.h"

#include <map>
#include <vector>

#include "Platform/Foundation/RunLoop/NSRunLoop.h"

/// Those of one centre by their numbers, which is the order of their registration.
class NSNotificationCenter::Observers : public Registrar {
 public:
  struct Observer {
    std::string name;
    NSNotificationHandler handler;
    bool isDropped = false;
  };

  uint64_t add(std::string_view name, NSNotificationHandler handler) {
    observers_.emplace(++newest_,
                       std::make_shared<Observer>(Observer{std::string(name), std::move(handler)}));
    return newest_;
  }

  void unregister(uint64_t number) override {
    // The observer goes with this function, after the list: what its handler holds may drop others.
    if (const auto entry = observers_.extract(number)) entry.mapped()->isDropped = true;
  }

  std::vector<std::shared_ptr<const Observer>> all() const {
    std::vector<std::shared_ptr<const Observer>> all;
    all.reserve(observers_.size());
    for (const auto& [number, observer] : observers_)
      all.push_back(observer);
    return all;
  }

 private:
  std::map<uint64_t, std::shared_ptr<Observer>> observers_;
  uint64_t newest_ = 0;
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

NSNotificationCenter::NSNotificationCenter() : observers_(std::make_shared<Observers>()) {}

NSNotificationCenter::~NSNotificationCenter() = default;

NSObservation NSNotificationCenter::addObserver(std::string_view name,
                                                NSNotificationHandler handler) {
  return {observers_, observers_->add(name, std::move(handler))};
}

void NSNotificationCenter::postNotification(std::string_view name,
                                            const PropertyList::Dictionary& userInfo) {
  // The posts of handlers, and registrations that they add or drop, must not upset this walk; nor
  // does the centre's own end.
  const auto kept = observers_;
  const NSNotification notification{std::string(name), userInfo};
  for (const auto& observer : kept->all()) {
    if (observer->isDropped || observer->name != name) continue;
    NSRunLoop::guarded([&] { observer->handler(notification); });
  }
}
