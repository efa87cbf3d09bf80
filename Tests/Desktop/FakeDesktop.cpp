// A desktop for tests: a settings portal on the session bus, and the sleep manager's and the date
// service's names on the bus that stands for the system's. It obeys its own interface:
//
//   com.wenmark.velmora5.FakeDesktop.Set(key, value)   a setting of the portal, with its signal
//   com.wenmark.velmora5.FakeDesktop.Sleep(isGoing)    PrepareForSleep
//   com.wenmark.velmora5.FakeDesktop.ZoneChanged()     the date service's PropertiesChanged

#include <gio/gio.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

constexpr const char* Interfaces =
    "<node>"
    "<interface name='org.freedesktop.portal.Settings'>"
    "<method name='Read'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='v' direction='out'/></method>"
    "</interface>"
    "<interface name='com.wenmark.velmora5.FakeDesktop'>"
    "<method name='Set'><arg type='s' direction='in'/><arg type='u' direction='in'/></method>"
    "<method name='Sleep'><arg type='b' direction='in'/></method>"
    "<method name='ZoneChanged'/>"
    "</interface>"
    "</node>";
constexpr const char* PortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* Appearance = "org.freedesktop.appearance";

struct Desktop {
  GDBusConnection* session = nullptr;
  GDBusConnection* system = nullptr;
  std::map<std::string, guint32> settings;  ///< 0 where there is none.
};

void answer(GDBusConnection*, const char*, const char*, const char*, const char* method,
            GVariant* parameters, GDBusMethodInvocation* invocation, gpointer data) {
  auto& desktop = *static_cast<Desktop*>(data);
  const std::string name = method;
  GVariant* reply = nullptr;
  if (name == "Read") {
    const char* key = nullptr;
    g_variant_get(parameters, "(&s&s)", nullptr, &key);
    // As the portal does: a variant within a variant.
    reply = g_variant_new("(v)", g_variant_new("v", g_variant_new_uint32(desktop.settings[key])));
  } else if (name == "Set") {
    const char* key = nullptr;
    guint32 value = 0;
    g_variant_get(parameters, "(&su)", &key, &value);
    desktop.settings[key] = value;
    g_dbus_connection_emit_signal(
        desktop.session, nullptr, PortalPath, "org.freedesktop.portal.Settings", "SettingChanged",
        g_variant_new("(ssv)", Appearance, key, g_variant_new_uint32(value)), nullptr);
  } else if (name == "Sleep") {
    g_dbus_connection_emit_signal(desktop.system, nullptr, "/org/freedesktop/login1",
                                  "org.freedesktop.login1.Manager", "PrepareForSleep", parameters,
                                  nullptr);
  } else {
    g_dbus_connection_emit_signal(
        desktop.system, nullptr, "/org/freedesktop/timedate1", "org.freedesktop.DBus.Properties",
        "PropertiesChanged",
        g_variant_new("(sa{sv}as)", "org.freedesktop.timedate1", nullptr, nullptr), nullptr);
  }
  g_dbus_method_invocation_return_value(invocation, reply);
}

}  // namespace

int main() {
  Desktop desktop;
  desktop.session = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  desktop.system = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(Interfaces, nullptr);
  const GDBusInterfaceVTable functions = {answer, nullptr, nullptr, {}};
  for (int index = 0; node->interfaces[index] != nullptr; ++index) {
    g_dbus_connection_register_object(desktop.session, PortalPath, node->interfaces[index],
                                      &functions, &desktop, nullptr, nullptr);
  }
  for (const char* name : {"org.freedesktop.login1", "org.freedesktop.timedate1"}) {
    g_bus_own_name_on_connection(desktop.system, name, G_BUS_NAME_OWNER_FLAGS_NONE, nullptr,
                                 nullptr, nullptr, nullptr);
  }
  const auto ready = [](GDBusConnection*, const char*, gpointer) {
    std::puts("ready");
    std::fflush(stdout);
  };
  g_bus_own_name_on_connection(desktop.session, "org.freedesktop.portal.Desktop",
                               G_BUS_NAME_OWNER_FLAGS_NONE, ready, nullptr, nullptr, nullptr);
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
