#include "Platform/Foundation/Settings/AccessibilityStatus.h"

#include <gio/gio.h>

#include <cstdlib>
#include <string_view>
#include <utility>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/Notifications/MessageBus_p.h"
#include "Platform/Foundation/Notifications/SignalSubscription_p.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"

namespace {

constexpr const char* BusName = "org.a11y.Bus";
constexpr const char* ObjectPath = "/org/a11y/bus";
constexpr const char* StatusInterface = "org.a11y.Status";
constexpr const char* PropertiesInterface = "org.freedesktop.DBus.Properties";

using Variant = LibraryHandle<GVariant, g_variant_unref>;

/// Whether a dictionary of properties says that something is on.
bool saysEnabled(GVariant* properties) {
  for (const char* name : {"IsEnabled", "ScreenReaderEnabled"}) {
    gboolean value = FALSE;
    if (g_variant_lookup(properties, name, "b", &value) && value) return true;
  }
  return false;
}

bool isForbidden() {
  const char* value = std::getenv("NO_AT_BRIDGE");
  return value != nullptr && std::string_view(value) == "1";
}

}  // namespace

class AccessibilityStatus::Watch : public std::enable_shared_from_this<Watch>,
                                   private MessageBusDelegate {
 public:
  explicit Watch(std::function<void()> onEnabled) : onEnabled_(std::move(onEnabled)) {}

  void start() { registration_ = MessageBus::sessionBus().addDelegate(*this); }

  /// Nothing is called any more.
  void end() {
    registration_.reset();
    onEnabled_ = nullptr;
    changes_.reset();
    owners_.reset();
  }

 private:
  void busConnected(GDBusConnection* bus) override {
    if (!onEnabled_) return;
    changes_ =
        std::make_unique<SignalSubscription>(bus, BusName, PropertiesInterface, "PropertiesChanged",
                                             ObjectPath, StatusInterface, changed, this);
    owners_ = std::make_unique<SignalSubscription>(
        bus, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
        "/org/freedesktop/DBus", BusName, ownerChanged, this);
    ask(bus);
  }

  void ask(GDBusConnection* bus) {
    const auto answered = [](GObject* source, GAsyncResult* result, gpointer data) {
      const std::unique_ptr<std::weak_ptr<Watch>> held(static_cast<std::weak_ptr<Watch>*>(data));
      const Variant answer(g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(source),
                                                         result, nullptr));
      const auto watch = held->lock();
      if (!answer || !watch) return;
      const Variant properties(g_variant_get_child_value(answer.get(), 0));
      if (saysEnabled(properties.get())) watch->tell();
    };
    g_dbus_connection_call(bus, BusName, ObjectPath, PropertiesInterface, "GetAll",
                           g_variant_new("(s)", StatusInterface), G_VARIANT_TYPE("(a{sv})"),
                           G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, answered,
                           std::make_unique<std::weak_ptr<Watch>>(weak_from_this()).release());
  }

  void tell() {
    if (!onEnabled_) return;
    const auto onEnabled = std::exchange(onEnabled_, nullptr);
    NSRunLoop::guarded(onEnabled);
  }

  static void changed(GDBusConnection*, const char*, const char*, const char*, const char*,
                      GVariant* parameters, gpointer self) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv}as)"))) return;
    const Variant properties(g_variant_get_child_value(parameters, 1));
    if (saysEnabled(properties.get())) static_cast<Watch*>(self)->tell();
  }

  static void ownerChanged(GDBusConnection* bus, const char*, const char*, const char*, const char*,
                           GVariant* parameters, gpointer self) {
    const char* newOwner = nullptr;
    g_variant_get(parameters, "(&s&s&s)", nullptr, nullptr, &newOwner);
    if (*newOwner != '\0') static_cast<Watch*>(self)->ask(bus);
  }

  std::function<void()> onEnabled_;
  std::unique_ptr<SignalSubscription> changes_;
  std::unique_ptr<SignalSubscription> owners_;
  Registration registration_;
};

AccessibilityStatus::AccessibilityStatus(std::function<void()> onEnabled) {
  if (isForbidden()) return;
  watch_ = std::make_shared<Watch>(std::move(onEnabled));
  watch_->start();
}

AccessibilityStatus::~AccessibilityStatus() {
  if (watch_) watch_->end();
}
