#include <glib.h>

#include <memory>

#include "Platform/Foundation/NSRunLoop.h"

namespace {

struct OneShotSource {
  GSource base;
  NSRunLoop::Callback* callback;
};

gboolean dispatchOneShot(GSource* source, GSourceFunc, gpointer) {
  NSRunLoop::guarded(*reinterpret_cast<OneShotSource*>(source)->callback);
  return G_SOURCE_REMOVE;
}

void finalizeOneShot(GSource* source) {
  std::unique_ptr<NSRunLoop::Callback> owned(reinterpret_cast<OneShotSource*>(source)->callback);
}

GSourceFuncs oneShotFunctions = {nullptr,         nullptr, dispatchOneShot,
                                 finalizeOneShot, nullptr, nullptr};

class GLibRunLoop : public NSRunLoop {
 public:
  int64_t now() const override { return g_get_monotonic_time() * 1000; }

  TimerId scheduleAt(int64_t deadline, Callback callback) override {
    GSource* source = g_source_new(&oneShotFunctions, sizeof(OneShotSource));
    reinterpret_cast<OneShotSource*>(source)->callback =
        std::make_unique<Callback>(std::move(callback)).release();
    // Rounded up, and a ready time of 0 is "at once" to GLib while a negative one means never.
    g_source_set_ready_time(source, deadline > 0 ? (deadline + 999) / 1000 : 0);
    const guint timer = g_source_attach(source, context_);
    g_source_unref(source);
    return timer;
  }

  void cancel(TimerId timer) override {
    GSource* source = g_main_context_find_source_by_id(context_, static_cast<guint>(timer));
    if (source != nullptr) g_source_destroy(source);
  }

  void run() override {
    stopped_ = false;
    while (!stopped_)
      g_main_context_iteration(context_, TRUE);
  }

  void stop() override {
    stopped_ = true;
    g_main_context_wakeup(context_);
  }

  bool runPending() override {
    bool ran = false;
    while (g_main_context_iteration(context_, FALSE))
      ran = true;
    return ran;
  }

 private:
  GMainContext* context_ = g_main_context_default();
  bool stopped_ = false;
};

}  // namespace

NSRunLoop& makeDesktopRunLoop() {
  static GLibRunLoop loop;
  return loop;
}
