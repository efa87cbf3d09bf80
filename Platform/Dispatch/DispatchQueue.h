#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

/// Work that runs one at a time, in the order in which it was added. Everything here may be called
/// from any thread. Waiting work keeps its queue alive; what still waits when the process ends is
/// dropped.
class DispatchQueue {
 public:
  explicit DispatchQueue(std::string_view label) : label_(label) {}
  DispatchQueue(const DispatchQueue&) = delete;
  DispatchQueue& operator=(const DispatchQueue&) = delete;
  virtual ~DispatchQueue() = default;

  /// An exception that leaves `work` ends in `NSRunLoop::guarded`.
  virtual void async(std::function<void()> work) = 0;
  /// An exception that leaves `work` reaches the caller.
  virtual void sync(const std::function<void()>& work) = 0;

  const std::string& label() const { return label_; }
  void setSpecific(const void* key, void* context);
  void* specific(const void* key) const;

 protected:
  /// Adds `work` and waits for its end.
  void syncByHandOver(const std::function<void()>& work);

 private:
  const std::string label_;
  mutable std::mutex mutex_;
  std::map<const void*, void*> specifics_;
};

using dispatch_queue_t = std::shared_ptr<DispatchQueue>;
