#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/Foundation/Registration.h"

/// Who is told of something, in the order of adding. Delegates are not owned: whoever adds one
/// keeps the handle, whose end removes it, and lets it go before the delegate. Main thread only.
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

  /// Adds a delegate, or keeps it in its place if the list holds it already: the new handle then
  /// counts and the one before no more.
  Registration add(Delegate& delegate) {
    auto& entries = slots_->entries;
    auto entry = std::ranges::find(entries, &delegate, &Entry::delegate);
    if (entry == entries.end()) entry = entries.insert(entry, {&delegate, 0});
    entry->number = ++slots_->newest;
    return {slots_, entry->number};
  }

  void remove(const Delegate& delegate) {
    slots_->removeIf([&](const Entry& entry) { return entry.delegate == &delegate; });
  }

  void clear() {
    slots_->removeIf([](const Entry&) { return true; });
  }

  bool contains(const Delegate& delegate) const {
    return std::ranges::find(slots_->entries, &delegate, &Entry::delegate) != slots_->entries.end();
  }

  std::vector<Delegate*> all() const {
    std::vector<Delegate*> present;
    for (const Entry& entry : slots_->entries) {
      if (entry.delegate != nullptr) present.push_back(entry.delegate);
    }
    return present;
  }

  /// Calls `message` with each delegate. An exception ends the round and reaches the caller.
  template <typename Message>
  void tell(const Message& message) const {
    const Round round(slots_);
    for (size_t index = 0; index < round.count; ++index) {
      if (Delegate* delegate = round.slots->entries[index].delegate) message(*delegate);
    }
  }

 private:
  struct Entry {
    Delegate* delegate;
    uint64_t number;
  };

  /// A delegate that is removed leaves an empty slot while any round goes over them.
  struct Slots : Registrar {
    std::vector<Entry> entries;
    uint64_t newest = 0;
    int rounds = 0;

    void unregister(uint64_t number) override {
      removeIf([&](const Entry& entry) { return entry.number == number; });
    }

    template <typename Predicate>
    void removeIf(const Predicate& isToGo) {
      for (Entry& entry : entries) {
        if (isToGo(entry)) entry.delegate = nullptr;
      }
      tidy();
    }

    void tidy() {
      if (rounds == 0)
        std::erase_if(entries, [](const Entry& entry) { return entry.delegate == nullptr; });
    }
  };

  /// Keeps the slots, which may lose their list meanwhile.
  struct Round {
    explicit Round(const std::shared_ptr<Slots>& list) : slots(list), count(list->entries.size()) {
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
