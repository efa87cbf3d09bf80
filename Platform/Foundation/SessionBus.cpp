#include "Platform/Foundation/SessionBus.h"

#include <cstdlib>
#include <filesystem>
#include <string>

#include "Platform/Foundation/NSLog.h"

namespace {

/// GIO would start a bus daemon where none runs; a clock must not do that.
bool sessionBusIsThere() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS")) return *address != '\0';
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  std::error_code error;
  return runtime != nullptr &&
         std::filesystem::exists(std::filesystem::path(runtime) / "bus", error);
}

GDBusConnection* connect() {
  if (!sessionBusIsThere()) return nullptr;
  GError* error = nullptr;
  GDBusConnection* connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
  if (connection == nullptr) {
    NSLog(std::string("error: no session bus, so no news from other processes: ") + error->message);
    g_error_free(error);
    return nullptr;
  }
  // A session's end must not kill the process before it has tidied up.
  g_dbus_connection_set_exit_on_close(connection, FALSE);
  return connection;
}

}  // namespace

GDBusConnection* sessionBus() {
  static GDBusConnection* connection = connect();
  return connection;
}
