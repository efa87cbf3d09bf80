#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

/// Who is told of something, in the order of adding. Delegates are not owned: whoever adds one
/// removes it before it goes. Main thread only.
///
/// A message may add and remove delegates, send another message and destroy the list itself: one
/// that was removed is not told any more, one that was added is told from the next message on.
template <typename Delegate>
class DelegateList {
 public:
  DelegateList() = default;
  DelegateList(const DelegateList&) = delete;
  DelegateList& operator=(const DelegateList&) = delete;
  ~DelegateList() { clear(); }

  /// Adds a delegate unless the list already holds it.
  void add(Delegate& delegate) {
    if (!contains(delegate)) slots_->delegates.push_back(&delegate);
  }

  void remove(const Delegate& delegate) {
    std::ranges::replace(slots_->delegates, &delegate, nullptr);
    slots_->tidy();
  }

  void clear() {
    std::ranges::fill(slots_->delegates, nullptr);
    slots_->tidy();
  }

  bool contains(const Delegate& delegate) const {
    return std::ranges::find(slots_->delegates, &delegate) != slots_->delegates.end();
  }

  std::vector<Delegate*> all() const {
    std::vector<Delegate*> present = slots_->delegates;
    std::erase(present, nullptr);
    return present;
  }

  /// Calls `message` with each delegate. An exception ends the round and reaches the caller.
  template <typename Message>
  void tell(const Message& message) const {
    const Round round(slots_);
    for (size_t index = 0; index < round.count; ++index) {
      if (Delegate* delegate = round.slots->delegates[index]) message(*delegate);
    }
  }

 private:
  /// A delegate that is removed leaves an empty slot while any round goes over them.
  struct Slots {
    std::vector<Delegate*> delegates;
    int rounds = 0;

    void tidy() {
      if (rounds == 0) std::erase(delegates, nullptr);
    }
  };

  /// Keeps the slots, which may lose their list meanwhile.
  struct Round {
    explicit Round(const std::shared_ptr<Slots>& list)
        : slots(list), count(list->delegates.size()) {
      ++slots->rounds;
    }
    Round(const Round&) = delete;
    Round& operator=(const Round&) = delete;
    ~Round() {
      --slots->rounds;
      slots->tidy();
    }

    const std::shared_ptr<Slots> slots;
    const size_t count;
  };

  std::shared_ptr<Slots> slots_ = std::make_shared<Slots>();
};
