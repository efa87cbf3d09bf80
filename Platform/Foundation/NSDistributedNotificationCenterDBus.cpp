#include <gio/gio.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "Platform/Foundation/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSRunLoop.h"

namespace {

constexpr const char* ObjectPath = "/com/wenmark/velmora5/Notifications";
constexpr const char* InterfaceName = "com.wenmark.velmora5.Notifications";
constexpr const char* SignalName = "Posted";

struct VariantDeleter {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, VariantDeleter>;

/// GIO would start a bus daemon where none runs; a clock must not do that.
bool sessionBusIsThere() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS")) return *address != '\0';
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  std::error_code error;
  return runtime != nullptr &&
         std::filesystem::exists(std::filesystem::path(runtime) / "bus", error);
}

class DBusNotificationCenter : public NSDistributedNotificationCenter {
 public:
  DBusNotificationCenter() {
    if (!sessionBusIsThere()) return;
    GError* error = nullptr;
    connection_ = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (connection_ == nullptr) {
      NSLog(std::string("error: no session bus, so no news from other processes: ") +
            error->message);
      g_error_free(error);
      return;
    }
    // A session's end must not kill the process before it has tidied up.
    g_dbus_connection_set_exit_on_close(connection_, FALSE);
    subscription_ = g_dbus_connection_signal_subscribe(
        connection_, nullptr, InterfaceName, SignalName, ObjectPath, nullptr,
        G_DBUS_SIGNAL_FLAGS_NONE, received, this, nullptr);
  }

  ~DBusNotificationCenter() override {
    if (connection_ == nullptr) return;
    g_dbus_connection_signal_unsubscribe(connection_, subscription_);
    g_object_unref(connection_);
  }

  NSObservation addObserver(std::string_view name, NSNotificationHandler handler) override {
    return local_.addObserver(name, std::move(handler));
  }

  void postNotification(std::string_view name, const PropertyList::Dictionary& userInfo) override {
    if (connection_ == nullptr) {
      NSRunLoop& loop = NSRunLoop::mainRunLoop();
      loop.scheduleAt(loop.now(), [this, name = std::string(name), userInfo] {
        local_.postNotification(name, userInfo);
      });
      return;
    }
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
    for (const auto& [key, value] : userInfo) {
      if (const auto* text = value.string()) {
        g_variant_builder_add(&builder, "{ss}", key.c_str(), text->c_str());
      }
    }
    g_dbus_connection_emit_signal(connection_, nullptr, ObjectPath, InterfaceName, SignalName,
                                  g_variant_new("(sa{ss})", std::string(name).c_str(), &builder),
                                  nullptr);
    g_dbus_connection_flush_sync(connection_, nullptr, nullptr);
  }

 private:
  static void received(GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant* parameters, gpointer self) {
    // Any process may send here: what is not in our form is not ours.
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{ss})"))) return;
    const char* name = nullptr;
    GVariant* entries = nullptr;
    g_variant_get(parameters, "(&s@a{ss})", &name, &entries);
    const Variant owned(entries);
    PropertyList::Dictionary userInfo;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, entries);
    const char* key = nullptr;
    const char* value = nullptr;
    while (g_variant_iter_next(&iterator, "{&s&s}", &key, &value))
      userInfo.emplace(key, value);
    NSRunLoop::guarded([&] {
      static_cast<DBusNotificationCenter*>(self)->local_.postNotification(name, userInfo);
    });
  }

  NSNotificationCenter local_;
  GDBusConnection* connection_ = nullptr;
  guint subscription_ = 0;
};

}  // namespace

NSDistributedNotificationCenter& NSDistributedNotificationCenter::defaultCenter() {
  static DBusNotificationCenter center;
  return center;
}
