#include "Platform/Foundation/Notifications/BusConnectionAttempt_p.h"

#include <thread>
#include <utility>

std::shared_ptr<BusConnectionAttempt> BusConnectionAttempt::start(
    const std::string& address, std::function<void(BusConnectionAttempt&)> ended) {
  std::shared_ptr<BusConnectionAttempt> attempt(new BusConnectionAttempt(std::move(ended)));
  std::thread([attempt, address] { attempt->connect(address); }).detach();
  return attempt;
}

void BusConnectionAttempt::connect(const std::string& address) {
  // A connection of our own: the one that GIO shares would be handed out again after its end.
  constexpr auto Flags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  GError* error = nullptr;
  BusConnection made(g_dbus_connection_new_for_address_sync(address.c_str(), Flags, nullptr,
                                                            cancellable_.get(), &error));
  {
    const std::lock_guard guard(mutex_);
    connection_ = std::move(made);
    if (error != nullptr) reason_ = error->message;
    hasEnded_ = true;
    itself_ = shared_from_this();
  }
  g_clear_error(&error);
  changed_.notify_all();
  g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer attempt) -> gboolean {
        static_cast<BusConnectionAttempt*>(attempt)->tellEnded();
        return G_SOURCE_REMOVE;
      },
      this, nullptr);
}

void BusConnectionAttempt::tellEnded() {
  std::shared_ptr<BusConnectionAttempt> itself;
  {
    const std::lock_guard guard(mutex_);
    itself = std::move(itself_);
  }
  ended_(*itself);
}

bool BusConnectionAttempt::waitFor(std::chrono::milliseconds limit) {
  std::unique_lock guard(mutex_);
  return changed_.wait_for(guard, limit, [this] { return hasEnded_; });
}

BusConnection BusConnectionAttempt::takeConnection() {
  const std::lock_guard guard(mutex_);
  return std::move(connection_);
}
