#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/Foundation/PropertyLists/PropertyList.h"

struct NSNotification {
  std::string name;
  PropertyList::Dictionary userInfo;

  /// A text of the user information; empty if there is none under that key.
  std::string textForKey(std::string_view key) const;
};

/// A registration with a notification centre. It lasts as long as this handle: the handler is not
/// called after the handle has gone.
class NSObservation {
 public:
  NSObservation() = default;
  explicit NSObservation(std::shared_ptr<void> registration)
      : registration_(std::move(registration)) {}

 private:
  std::shared_ptr<void> registration_;
};

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
  struct Registry;
  std::shared_ptr<Registry> registry_;
};
