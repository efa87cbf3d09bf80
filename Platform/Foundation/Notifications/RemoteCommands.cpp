#include "Platform/Foundation/Notifications/RemoteCommands.h"

#include <gio/gio.h>

#include <algorithm>
#include <stdexcept>

#include "Platform/Foundation/Notifications/MessageBus_p.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

namespace {

constexpr const char* Interface = "com.wenmark.velmora5.Commands";
constexpr const char* Method = "Perform";
constexpr int AnswerMilliseconds = 2000;

constexpr const char* Introspection =
    "<node><interface name='com.wenmark.velmora5.Commands'>"
    "<method name='Perform'><arg type='s' name='command' direction='in'/>"
    "<arg type='b' name='answer' direction='out'/></method></interface></node>";

std::string busName(std::string_view service) {
  return "com.wenmark.velmora5." + std::string(service);
}

std::string objectPath(std::string_view service) {
  return "/com/wenmark/velmora5/" + std::string(service);
}

}  // namespace

class RemoteCommands::Service : private MessageBusDelegate {
 public:
  Service(std::string_view service, Handler handler)
      : name_(busName(service)), path_(objectPath(service)), handler_(std::move(handler)) {
    listening_ = bus_.addDelegate(*this);
  }
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;
  ~Service() override { end(); }

 private:
  void busConnected(GDBusConnection* connection) override {
    end();
    static GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(Introspection, nullptr);
    static const GDBusInterfaceVTable methods{called, nullptr, nullptr, {}};
    GError* error = nullptr;
    registration_ = g_dbus_connection_register_object(
        connection, path_.c_str(), g_dbus_node_info_lookup_interface(node, Interface), &methods,
        this, nullptr, &error);
    if (registration_ == 0) {
      NSLog(std::string("error: no commands can be taken: ") + error->message);
      g_error_free(error);
      return;
    }
    connection_ = static_cast<GDBusConnection*>(g_object_ref(connection));
    ownership_ = g_bus_own_name_on_connection(
        connection, name_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
  }

  void end() {
    if (connection_ == nullptr) return;
    g_bus_unown_name(ownership_);
    g_dbus_connection_unregister_object(connection_, registration_);
    g_object_unref(connection_);
    connection_ = nullptr;
  }

  static void called(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
    const char* command = nullptr;
    g_variant_get(parameters, "(&s)", &command);
    std::optional<bool> answer;
    NSRunLoop::guarded([&] { answer = static_cast<Service*>(self)->handler_(command); });
    if (answer) {
      g_dbus_method_invocation_return_value(invocation, g_variant_new("(b)", *answer));
    } else {
      g_dbus_method_invocation_return_error(invocation, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                            "there is no command '%s'", command);
    }
  }

  std::string name_;
  std::string path_;
  Handler handler_;
  MessageBus& bus_ = MessageBus::sessionBus();
  GDBusConnection* connection_ = nullptr;
  guint registration_ = 0;
  guint ownership_ = 0;
  Registration listening_;
};

RemoteCommands::RemoteCommands(std::string_view service, Handler handler)
    : service_(std::make_unique<Service>(service, std::move(handler))) {}

RemoteCommands::~RemoteCommands() = default;

bool RemoteCommands::perform(std::string_view service, const std::string& command) {
  GDBusConnection* connection = MessageBus::sessionBus().connection();
  if (connection == nullptr) throw std::runtime_error("there is no session bus");
  GError* error = nullptr;
  GVariant* answer = g_dbus_connection_call_sync(
      connection, busName(service).c_str(), objectPath(service).c_str(), Interface, Method,
      g_variant_new("(s)", command.c_str()), G_VARIANT_TYPE("(b)"), G_DBUS_CALL_FLAGS_NO_AUTO_START,
      AnswerMilliseconds, nullptr, &error);
  if (answer == nullptr) {
    const bool isAlone = g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
                         g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER);
    g_dbus_error_strip_remote_error(error);
    std::string reason = isAlone ? "it does not run" : error->message;
    std::ranges::replace(reason, '\n', ' ');
    g_error_free(error);
    throw std::runtime_error(reason);
  }
  gboolean value = FALSE;
  g_variant_get(answer, "(b)", &value);
  g_variant_unref(answer);
  return value != FALSE;
}
