#include "Tests/Hosts/AccessibleDesktop.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr const char* Registry = "org.a11y.atspi.Registry";
constexpr const char* RootPath = "/org/a11y/atspi/accessible/root";
constexpr const char* Accessible = "org.a11y.atspi.Accessible";
constexpr const char* Action = "org.a11y.atspi.Action";
constexpr const char* Events = "org.a11y.atspi.Event.Object";
constexpr const char* Properties = "org.freedesktop.DBus.Properties";

struct NamedState {
  int number;
  bool isUsual;
  const char* otherwise;
};
// AtspiStateType of at-spi2-core.
constexpr NamedState States[] = {
    {8, true, "disabled"},  {24, true, "insensitive"}, {25, true, "out of sight"},
    {30, true, "hidden"},   {9, false, "expandable"},  {10, false, "expanded"},
    {12, false, "focused"}, {23, false, "selected"},
};

GDBusConnection* connectTo(const char* address) {
  return g_dbus_connection_new_for_address_sync(
      address,
      GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr);
}

/// The answer of the session's own bus to a question about accessibility.
GVariant* ask(const char* interface, const char* method, GVariant* arguments) {
  GDBusConnection* session = connectTo(std::getenv("DBUS_SESSION_BUS_ADDRESS"));
  GVariant* answer =
      g_dbus_connection_call_sync(session, "org.a11y.Bus", "/org/a11y/bus", interface, method,
                                  arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
  g_object_unref(session);
  return answer;
}

}  // namespace

void setAccessibilityEnabled(bool enabled) {
  g_variant_unref(
      ask(Properties, "Set",
          g_variant_new("(ssv)", "org.a11y.Status", "IsEnabled", g_variant_new_boolean(enabled))));
}

AccessibleDesktop::AccessibleDesktop() {
  const Answer answer(ask("org.a11y.Bus", "GetAddress", nullptr));
  const char* address = nullptr;
  g_variant_get(answer.get(), "(&s)", &address);
  bus_.reset(connectTo(address));
}

AccessibleDesktop::~AccessibleDesktop() {
  g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
}

AccessibleDesktop::Answer AccessibleDesktop::call(const Reference& object, const char* interface,
                                                  const char* method, GVariant* arguments) const {
  const Answer answer(g_dbus_connection_call_sync(
      bus_.get(), object.owner.c_str(), object.path.c_str(), interface, method, arguments, nullptr,
      G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  const bool isEmpty = !answer || g_variant_n_children(answer.get()) == 0;
  return Answer(isEmpty ? nullptr : g_variant_get_child_value(answer.get(), 0));
}

std::string AccessibleDesktop::name(const Reference& object) const {
  const Answer answer = call(object, Properties, "Get", g_variant_new("(ss)", Accessible, "Name"));
  if (!answer) return "?";
  return g_variant_get_string(Answer(g_variant_get_variant(answer.get())).get(), nullptr);
}

std::vector<std::string> AccessibleDesktop::actions(const Reference& object) const {
  std::vector<std::string> names;
  const Answer list = call(object, Action, "GetActions");
  for (size_t index = 0; list && index < g_variant_n_children(list.get()); ++index) {
    const char* name = nullptr;
    g_variant_get_child(list.get(), index, "(&s&s&s)", &name, nullptr, nullptr);
    names.emplace_back(name);
  }
  return names;
}

std::string AccessibleDesktop::lineOf(const Reference& object) const {
  const Answer role = call(object, Accessible, "GetRoleName");
  const Answer states = call(object, Accessible, "GetState");
  if (!role || !states) return "?";
  uint32_t low = 0;
  g_variant_get_child(states.get(), 0, "u", &low);
  std::string text = g_variant_get_string(role.get(), nullptr);
  text += " \"" + name(object) + "\"";
  for (const std::string& action : actions(object))
    text += " (" + action + ")";
  for (const NamedState& state : States) {
    if (((low >> state.number & 1) != 0) != state.isUsual)
      text += std::string(" ") + state.otherwise;
  }
  return text;
}

std::vector<AccessibleDesktop::Reference> AccessibleDesktop::children(
    const Reference& object) const {
  std::vector<Reference> found;
  const Answer list = call(object, Accessible, "GetChildren");
  for (size_t index = 0; list && index < g_variant_n_children(list.get()); ++index) {
    const char* owner = nullptr;
    const char* path = nullptr;
    g_variant_get_child(list.get(), index, "(&s&o)", &owner, &path);
    found.push_back({owner, path});
  }
  return found;
}

void AccessibleDesktop::addLines(const Reference& object, const std::string& indent,
                                 std::string& lines) const {
  lines += indent + lineOf(object) + "\n";
  for (const Reference& child : children(object))
    addLines(child, indent + "  ", lines);
}

std::string AccessibleDesktop::tree() const {
  std::string lines;
  for (const Reference& program : children({Registry, RootPath})) {
    for (const Reference& child : children(program))
      addLines(child, "", lines);
  }
  return lines;
}

std::string AccessibleDesktop::line(const std::string& name) const {
  const auto object = find({Registry, RootPath}, name);
  return object ? lineOf(*object) : "";
}

std::optional<AccessibleDesktop::Reference> AccessibleDesktop::find(const Reference& root,
                                                                    const std::string& name) const {
  for (const Reference& child : children(root)) {
    if (this->name(child) == name) return child;
    if (auto found = find(child, name)) return found;
  }
  return std::nullopt;
}

bool AccessibleDesktop::perform(const std::string& name, const std::string& action) const {
  const auto object = find({Registry, RootPath}, name);
  if (!object) return false;
  const auto names = actions(*object);
  const auto found = std::ranges::find(names, action);
  if (found == names.end()) return false;
  const auto index = static_cast<int>(found - names.begin());
  const Answer isDone = call(*object, Action, "DoAction", g_variant_new("(i)", index));
  return isDone && g_variant_get_boolean(isDone.get());
}

NSRect AccessibleDesktop::place(const std::string& name) const {
  constexpr uint32_t OnScreen = 0;
  const auto object = find({Registry, RootPath}, name);
  if (!object) return {};
  const Answer answer =
      call(*object, "org.a11y.atspi.Component", "GetExtents", g_variant_new("(u)", OnScreen));
  if (!answer) return {};
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  g_variant_get(answer.get(), "(iiii)", &x, &y, &width, &height);
  return NSMakeRect(x, y, width, height);
}

void AccessibleDesktop::listen() {
  const auto received = [](GDBusConnection*, const char* owner, const char* path, const char*,
                           const char*, GVariant* event, gpointer data) {
    auto* self = static_cast<AccessibleDesktop*>(data);
    const char* what = nullptr;
    int number = 0;
    g_variant_get_child(event, 0, "&s", &what);
    g_variant_get_child(event, 1, "i", &number);
    self->heard_.push_back(std::string(what) + " " + std::to_string(number) + " " +
                           self->name({owner, path}));
  };
  g_main_context_push_thread_default(context_.get());
  g_dbus_connection_signal_subscribe(bus_.get(), nullptr, Events, nullptr, nullptr, nullptr,
                                     G_DBUS_SIGNAL_FLAGS_NONE, received, this, nullptr);
  g_main_context_pop_thread_default(context_.get());
  call({Registry, "/org/a11y/atspi/registry"}, Registry, "RegisterEvent",
       g_variant_new("(sass)", "object:", nullptr, ""));
}

const std::vector<std::string>& AccessibleDesktop::heard() const {
  while (g_main_context_iteration(context_.get(), FALSE)) {
  }
  return heard_;
}
