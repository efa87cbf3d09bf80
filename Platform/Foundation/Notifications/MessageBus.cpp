#include "Platform/Foundation/Notifications/MessageBus_p.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/SharedInstance.h"

using namespace std::chrono_literals;

namespace {

/// How long a start waits for the session's bus, which answers in milliseconds if at all.
constexpr auto StartLimit = 1000ms;
/// After this a handshake counts as failed.
constexpr auto HandshakeLimit = 10s;
constexpr std::chrono::milliseconds LongestPause = 60s;

/// GIO would start a bus daemon where none runs; a clock must not do that.
bool isThere(GBusType type) {
  const bool isSession = type == G_BUS_TYPE_SESSION;
  const char* address =
      std::getenv(isSession ? "DBUS_SESSION_BUS_ADDRESS" : "DBUS_SYSTEM_BUS_ADDRESS");
  if (address != nullptr) return *address != '\0';
  std::filesystem::path socket = "/run/dbus/system_bus_socket";
  if (isSession) {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime == nullptr) return false;
    socket = std::filesystem::path(runtime) / "bus";
  }
  std::error_code error;
  return std::filesystem::exists(socket, error);
}

}  // namespace

MessageBus& MessageBus::sessionBus() {
  // Neither bus is destroyed with the process: a handshake may end while that does.
  static auto* const shared = std::make_unique<SharedInstance<MessageBus>>().release();
  return *shared->get([] {
    auto made = make(G_BUS_TYPE_SESSION, "session bus");
    made->waitsAtTheStart_ = true;
    return made;
  });
}

MessageBus& MessageBus::systemBus() {
  static auto* const shared = std::make_unique<SharedInstance<MessageBus>>().release();
  return *shared->get([] { return make(G_BUS_TYPE_SYSTEM, "system bus"); });
}

std::unique_ptr<MessageBus> MessageBus::make(GBusType type, const char* name) {
  std::unique_ptr<MessageBus> bus(new MessageBus(type, name));
  if (isThere(type)) bus->connect();
  return bus;
}

MessageBus::~MessageBus() {
  for (const guint source : {handshakeTimeout_, pauseTimeout_}) {
    if (source != 0) g_source_remove(source);
  }
  if (attempt_) attempt_->giveUp();
  if (connection_) g_signal_handlers_disconnect_by_data(connection_.get(), this);
}

std::string MessageBus::address() const {
  if (!isThere(type_)) return "";
  const LibraryHandle<char, g_free> found(g_dbus_address_get_for_bus_sync(type_, nullptr, nullptr));
  return found ? found.get() : "";
}

GDBusConnection* MessageBus::connection() {
  waitAtTheStart();
  return connection_.get();
}

Registration MessageBus::addDelegate(MessageBusDelegate& delegate) {
  waitAtTheStart();
  Registration registration = delegates_.add(delegate);
  if (connection_) delegate.busConnected(connection_.get());
  return registration;
}

void MessageBus::connect() {
  const std::string address = this->address();
  if (address.empty()) return connectAfterAPause();
  attempt_ = BusConnectionAttempt::start(
      address, [this, life = std::weak_ptr(life_)](BusConnectionAttempt& attempt) {
        if (!life.expired()) attemptEnded(attempt);
      });
  const auto giveUp = [](gpointer self) -> gboolean {
    auto& bus = *static_cast<MessageBus*>(self);
    bus.handshakeTimeout_ = 0;
    bus.attempt_->giveUp();
    return G_SOURCE_REMOVE;
  };
  // GLib's own timers: the run loop may be a simulated one, on which no bus ever answers.
  handshakeTimeout_ =
      g_timeout_add_seconds(static_cast<guint>(HandshakeLimit.count()), giveUp, this);
}

void MessageBus::connectAfterAPause() {
  const auto again = [](gpointer self) -> gboolean {
    auto& bus = *static_cast<MessageBus*>(self);
    bus.pauseTimeout_ = 0;
    bus.connect();
    return G_SOURCE_REMOVE;
  };
  pauseTimeout_ = g_timeout_add(static_cast<guint>(pause_.count()), again, this);
  pause_ = std::min(2 * pause_, LongestPause);
}

void MessageBus::waitAtTheStart() {
  if (!std::exchange(waitsAtTheStart_, false) || !attempt_) return;
  if (attempt_->waitFor(StartLimit)) {
    attemptEnded(*attempt_);
  } else {
    report("does not answer");
  }
}

void MessageBus::attemptEnded(BusConnectionAttempt& attempt) {
  // Told twice where a start has waited for it.
  if (&attempt != attempt_.get()) return;
  const auto ended = std::exchange(attempt_, nullptr);
  if (handshakeTimeout_ != 0) g_source_remove(std::exchange(handshakeTimeout_, 0));
  connection_ = ended->takeConnection();
  if (!connection_) {
    report("cannot be reached (" + ended->reason() + ")");
    return connectAfterAPause();
  }
  g_signal_connect(connection_.get(), "closed", G_CALLBACK(tellClosed), this);
  // It may have ended before anyone could hear of it.
  if (g_dbus_connection_is_closed(connection_.get())) return connectionClosed();
  if (std::exchange(isTroubleReported_, false)) NSLog("the " + name_ + " is there again");
  pause_ = FirstPause;
  delegates_.tell(
      [this](MessageBusDelegate& delegate) { delegate.busConnected(connection_.get()); });
}

void MessageBus::tellClosed(GDBusConnection*, gboolean, GError*, gpointer self) {
  static_cast<MessageBus*>(self)->connectionClosed();
}

void MessageBus::connectionClosed() {
  g_signal_handlers_disconnect_by_data(connection_.get(), this);
  connection_.reset();
  report("has ended");
  connectAfterAPause();
}

void MessageBus::report(const std::string& text) {
  // Once for each time that the bus is away.
  if (std::exchange(isTroubleReported_, true)) return;
  NSLog("error: the " + name_ + " " + text + "; it is tried again from time to time");
}
