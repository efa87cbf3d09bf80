#include <glib-unix.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <utility>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/RunLoop/TimerQueue_p.h"

namespace {

using TimerId = TimerQueue::TimerId;

constexpr auto AnyTimer = std::numeric_limits<TimerId>::max();

/// GLib serves a source only when none before it is ready. Behind a toolkit's drawing
/// (`G_PRIORITY_HIGH_IDLE` + 20), which has its pauses; work that renews itself has none.
constexpr int WorkPriority = G_PRIORITY_HIGH_IDLE + 30;

/// The sources that watch descriptors, by GLib's numbers.
struct WatchSources : Registrar {
  void unregister(uint64_t number) override {
    GSource* source =
        g_main_context_find_source_by_id(g_main_context_default(), static_cast<guint>(number));
    if (source != nullptr) g_source_destroy(source);
  }
};

/// One source of GLib's serves all timers: sources of their own would run late ones in the order in
/// which they were made.
class GLibRunLoop : public NSRunLoop {
 public:
  GLibRunLoop() {
    reinterpret_cast<TimerSource*>(source_)->loop = this;
    // A callback may open a dialogue and serve the loop itself.
    g_source_set_can_recurse(source_, TRUE);
    g_source_set_priority(source_, WorkPriority);
    g_source_attach(source_, context_);
  }

  int64_t now() const override { return g_get_monotonic_time() * 1000; }

  Timer scheduleAt(int64_t deadline, Callback callback) override {
    const TimerId timer = timers_->add(deadline, g_get_monotonic_time(), std::move(callback));
    if (!g_main_context_is_owner(context_)) g_main_context_wakeup(context_);
    return {timers_, timer};
  }

  Watch watchDescriptor(int descriptor, Callback callback) override {
    const LibraryHandle<GSource, g_source_unref> watch(g_unix_fd_source_new(descriptor, G_IO_IN));
    g_source_set_callback(watch.get(), G_SOURCE_FUNC(+becameReadable),
                          std::make_unique<Callback>(std::move(callback)).release(),
                          [](gpointer held) { std::default_delete<Callback>()(callbackOf(held)); });
    g_source_set_priority(watch.get(), WorkPriority);
    return {watches_, g_source_attach(watch.get(), context_)};
  }

  void run() override {
    const TimerId outer = limitTo(AnyTimer);
    const bool wasStopped = isStopped_.exchange(false);
    while (!isStopped_)
      g_main_context_iteration(context_, TRUE);
    isStopped_ = wasStopped;
    limitTo(outer);
  }

  void stop() override {
    isStopped_ = true;
    g_main_context_wakeup(context_);
  }

  bool runPending() override {
    // Only what is scheduled by now: a callback that renews itself at once must not hold the
    // caller.
    const TimerId outer = limitTo(newestAllowed());
    // A stop is for the run around this; here it would leave what is due ready for ever.
    bool isStopped = isStopped_.exchange(false);
    bool ran = false;
    while (g_main_context_iteration(context_, FALSE)) {
      ran = true;
      if (isStopped_.exchange(false)) isStopped = true;
    }
    isStopped_ = isStopped;
    limitTo(outer);
    return ran;
  }

 private:
  struct TimerSource {
    GSource base;
    GLibRunLoop* loop;
  };

  static Callback* callbackOf(gpointer held) { return static_cast<Callback*>(held); }

  static gboolean becameReadable(int, GIOCondition, gpointer callback) {
    guarded(*callbackOf(callback));
    return G_SOURCE_CONTINUE;
  }

  static GLibRunLoop& loopOf(GSource* source) {
    return *reinterpret_cast<TimerSource*>(source)->loop;
  }

  static gboolean prepare(GSource* source, int* milliseconds) {
    *milliseconds = loopOf(source).wait();
    return *milliseconds == 0;
  }

  static gboolean check(GSource* source) { return loopOf(source).wait() == 0; }

  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    loopOf(source).runDue();
    return G_SOURCE_CONTINUE;
  }

  /// Milliseconds until the next timer, rounded up; -1 if none is awaited.
  int wait() {
    // Nothing is served any more: a library that serves the context until nothing is left in it, as
    // some do when they end, would never be done.
    if (isStopped_) return -1;
    const auto next = timers_->first();
    if (!next || next->second > limit_) return -1;
    const int64_t microseconds = std::max<int64_t>(0, next->first - g_source_get_time(source_));
    const int64_t milliseconds = microseconds / 1000 + (microseconds % 1000 > 0 ? 1 : 0);
    return static_cast<int>(std::min<int64_t>(milliseconds, std::numeric_limits<int>::max()));
  }

  void runDue() {
    // The second pass, for what the first one has handed over to the next, saves asking the kernel
    // in between whether anything else has come: a tick and its drawing are such two.
    constexpr int Passes = 2;
    for (int pass = 0; pass < Passes && !isStopped_; ++pass) {
      const int64_t now = g_get_monotonic_time();
      const TimerId newest = newestAllowed();
      while (const auto due = timers_->takeDue(now, newest)) {
        guarded(due->callback);
        if (isStopped_) break;
      }
    }
  }

  TimerId newestAllowed() const { return std::min(timers_->newest(), limit_); }

  /// Leaves timers newer than `limit` aside. Returns the limit before.
  TimerId limitTo(TimerId limit) { return std::exchange(limit_, limit); }

  static inline GSourceFuncs functions = {prepare, check, dispatch, nullptr, nullptr, nullptr};

  GMainContext* context_ = g_main_context_default();
  GSource* source_ = g_source_new(&functions, sizeof(TimerSource));
  const std::shared_ptr<TimerQueue> timers_ = std::make_shared<TimerQueue>();
  const std::shared_ptr<WatchSources> watches_ = std::make_shared<WatchSources>();
  TimerId limit_ = AnyTimer;  ///< Of the main thread.
  std::atomic<bool> isStopped_ = false;
};

}  // namespace

NSRunLoop& makeDesktopRunLoop() {
  // Never destroyed: other threads may still hand work over while the process ends.
  static GLibRunLoop* const loop = std::make_unique<GLibRunLoop>().release();
  return *loop;
}
