#include "Platform/Foundation/SystemBus.h"

#include <cstdlib>
#include <filesystem>

GDBusConnection* systemBus() {
  static GDBusConnection* connection = []() -> GDBusConnection* {
    std::error_code error;
    if (std::getenv("DBUS_SYSTEM_BUS_ADDRESS") == nullptr &&
        !std::filesystem::exists("/run/dbus/system_bus_socket", error)) {
      return nullptr;
    }
    GDBusConnection* made = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    if (made != nullptr) g_dbus_connection_set_exit_on_close(made, FALSE);
    return made;
  }();
  return connection;
}
