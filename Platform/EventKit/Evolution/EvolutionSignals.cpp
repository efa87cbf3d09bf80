#include "Platform/EventKit/Evolution/EvolutionSignals.h"

#include <utility>

struct EvolutionSignals::Listener {
  std::function<void()> changed;

  /// What a connection holds: it may outlive this by a call that is under way.
  using Watched = std::weak_ptr<const Listener>;

  static void tell(gpointer watched) {
    if (const auto listener = static_cast<const Watched*>(watched)->lock()) listener->changed();
  }
  static void onNone(gpointer /*object*/, gpointer watched) { tell(watched); }
  static void onOne(gpointer /*object*/, gpointer /*argument*/, gpointer watched) { tell(watched); }
  static void end(gpointer watched, GClosure* /*closure*/) {
    const std::unique_ptr<const Watched> ended(static_cast<const Watched*>(watched));
  }
};

EvolutionSignals::EvolutionSignals(std::function<void()> changed)
    : listener_(std::make_shared<Listener>(Listener{std::move(changed)})) {}

EvolutionSignals::~EvolutionSignals() {
  for (const Connection& connection : connections_)
    g_signal_handler_disconnect(connection.object.get(), connection.number);
}

void EvolutionSignals::connect(gpointer object, const char* signal, int arguments) {
  auto watched = std::make_unique<Listener::Watched>(listener_);
  const GCallback callback =
      arguments == 0 ? G_CALLBACK(Listener::onNone) : G_CALLBACK(Listener::onOne);
  const gulong number = g_signal_connect_data(object, signal, callback, watched.release(),
                                              Listener::end, static_cast<GConnectFlags>(0));
  connections_.push_back({ObjectHandle<GObject>(G_OBJECT(g_object_ref(object))), number});
}
