#include "Platform/Foundation/SharedInstance.h"

#include <utility>
#include <vector>

namespace {

struct Resets {
  std::mutex mutex;
  std::vector<std::function<void()>> youngestLast;
};

Resets& resets() {
  // Never destroyed: what ends with the process may still make something.
  static auto* const resets = std::make_unique<Resets>().release();
  return *resets;
}

}  // namespace

void onSharedInstancesReset(std::function<void()> reset) {
  const std::lock_guard guard(resets().mutex);
  resets().youngestLast.push_back(std::move(reset));
}

void resetSharedInstances() {
  // Ending one may make another, which goes, too.
  for (;;) {
    std::function<void()> reset;
    {
      const std::lock_guard guard(resets().mutex);
      if (resets().youngestLast.empty()) return;
      reset = std::move(resets().youngestLast.back());
      resets().youngestLast.pop_back();
    }
    reset();
  }
}
