#include "Tests/Hosts/AccessibleNames.h"

#include <gio/gio.h>

#include <memory>

namespace {

template <auto Release>
struct Releaser {
  template <typename T>
  void operator()(T* object) const {
    Release(object);
  }
};
using Connection = std::unique_ptr<GDBusConnection, Releaser<g_object_unref>>;
using Variant = std::unique_ptr<GVariant, Releaser<g_variant_unref>>;

/// An object and the program that it belongs to.
struct Accessible {
  std::string owner;
  std::string path;
};

/// Null if there is no answer: objects come and go.
Variant call(GDBusConnection* bus, const Accessible& object, const char* interface,
             const char* method, GVariant* arguments = nullptr) {
  return Variant(g_dbus_connection_call_sync(bus, object.owner.c_str(), object.path.c_str(),
                                             interface, method, arguments, nullptr,
                                             G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
}

/// Accessible objects have a bus of their own, whose address the session bus knows.
Connection connectToAccessibilityBus() {
  const Connection session(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (!session) return nullptr;
  const auto answer =
      call(session.get(), {"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress");
  if (!answer) return nullptr;
  const char* address = nullptr;
  g_variant_get(answer.get(), "(&s)", &address);
  constexpr auto flags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  return Connection(
      g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr));
}

void collectNames(GDBusConnection* bus, const Accessible& object, std::vector<std::string>& names) {
  constexpr const char* Interface = "org.a11y.atspi.Accessible";
  if (const auto answer = call(bus, object, "org.freedesktop.DBus.Properties", "Get",
                               g_variant_new("(ss)", Interface, "Name"))) {
    GVariant* value = nullptr;
    g_variant_get(answer.get(), "(v)", &value);
    const Variant owned(value);
    if (const std::string name = g_variant_get_string(value, nullptr); !name.empty()) {
      names.push_back(name);
    }
  }
  const auto answer = call(bus, object, Interface, "GetChildren");
  if (!answer) return;
  const Variant children(g_variant_get_child_value(answer.get(), 0));
  for (gsize index = 0; index < g_variant_n_children(children.get()); ++index) {
    const char* owner = nullptr;
    const char* path = nullptr;
    g_variant_get_child(children.get(), index, "(&s&o)", &owner, &path);
    collectNames(bus, {owner, path}, names);
  }
}

}  // namespace

std::vector<std::string> accessibleNames() {
  std::vector<std::string> names;
  if (const Connection bus = connectToAccessibilityBus()) {
    collectNames(bus.get(), {"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"}, names);
  }
  return names;
}
