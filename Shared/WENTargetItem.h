#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "Platform/Foundation/NSObject.h"

/// What a control does when it is pressed: an action of a target, which is given an object. Neither
/// is kept; once the target has gone, nothing is done.
class WENTargetItem_Time {
 public:
  /// Null is an object that has gone.
  using Action = std::function<void(NSObject* object)>;

  WENTargetItem_Time(std::weak_ptr<NSObject> target, Action action,
                     std::weak_ptr<NSObject> object = {})
      : target_(std::move(target)), action_(std::move(action)), object_(std::move(object)) {}

  void performAction() const {
    const auto target = target_.lock();
    if (target && action_) action_(object_.lock().get());
  }

 private:
  std::weak_ptr<NSObject> target_;
  Action action_;
  std::weak_ptr<NSObject> object_;
};
