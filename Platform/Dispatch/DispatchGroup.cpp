#include "Platform/Dispatch/DispatchGroup.h"

#include <utility>

#include "Platform/Dispatch/DispatchFunctions.h"

void DispatchGroup::enter() {
  const std::lock_guard guard(mutex_);
  ++entered_;
}

void DispatchGroup::leave() {
  const std::lock_guard guard(mutex_);
  if (--entered_ == 0) empty_.notify_all();
}

void DispatchGroup::wait() {
  std::unique_lock guard(mutex_);
  empty_.wait(guard, [this] { return entered_ == 0; });
}

dispatch_group_t dispatch_group_create() { return std::make_shared<DispatchGroup>(); }

void dispatch_group_async(const dispatch_group_t& group, const dispatch_queue_t& queue,
                          std::function<void()> work) {
  group->enter();
  // Left by a destructor: the work may end by an exception, or be dropped without having run.
  std::shared_ptr<void> membership(nullptr, [group](void*) { group->leave(); });
  dispatch_async(queue, [membership = std::move(membership), work = std::move(work)] { work(); });
}

void dispatch_group_wait(const dispatch_group_t& group) { group->wait(); }
