#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/Foundation/PropertyLists/PropertyList.h"
#include "Platform/Foundation/Registration.h"

struct NSNotification {
  std::string name;
  PropertyList::Dictionary userInfo;

  /// A text of the user information; empty if there is none under that key.
  std::string textForKey(std::string_view key) const;
};

/// A registration with a notification centre: the handler is not called after it has gone.
using NSObservation = Registration;

using NSNotificationHandler = std::function<void(const NSNotification&)>;

/// Notifications inside the process, delivered during the post, in the order of registration. A
/// handler that throws is reported and keeps nothing from the others. Main thread only.
class NSNotificationCenter {
 public:
  static NSNotificationCenter& defaultCenter();

  NSNotificationCenter();
  ~NSNotificationCenter();
  NSNotificationCenter(const NSNotificationCenter&) = delete;
  NSNotificationCenter& operator=(const NSNotificationCenter&) = delete;

  [[nodiscard]] NSObservation addObserver(std::string_view name, NSNotificationHandler handler);

  void postNotification(std::string_view name, const PropertyList::Dictionary& userInfo = {});

 private:
  class Observers;
  const std::shared_ptr<Observers> observers_;
};
