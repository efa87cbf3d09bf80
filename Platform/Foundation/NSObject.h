#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// Base of objects that are shared, compared by identity, and the target of delayed calls.
class NSObject : public std::enable_shared_from_this<NSObject> {
 public:
  NSObject();
  NSObject(const NSObject&) = delete;
  NSObject& operator=(const NSObject&) = delete;
  virtual ~NSObject();

  /// Calls `action` on the main run loop after `delay` seconds, on the next pass at the earliest.
  /// `selector` names the call for cancelling. The call is dropped with its target.
  void performSelectorAfterDelay(std::string_view selector, double delay,
                                 std::function<void()> action);

  /// Drops every delayed call of this object under `selector`.
  void cancelPreviousPerformRequests(std::string_view selector);

 private:
  struct DelayedCalls;
  std::unique_ptr<DelayedCalls> delayedCalls_;
};

/// Makes an object in two steps, so that an initialiser may call virtual operations: constructs,
/// then calls `init` with the arguments.
template <typename T, typename... Arguments>
std::shared_ptr<T> make(Arguments&&... arguments) {
  auto object = std::make_shared<T>();
  object->init(std::forward<Arguments>(arguments)...);
  return object;
}
