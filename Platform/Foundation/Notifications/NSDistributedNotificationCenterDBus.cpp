#include <gio/gio.h>

#include <memory>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/Notifications/DesktopWatch_p.h"
#include "Platform/Foundation/Notifications/MessageBus_p.h"
#include "Platform/Foundation/Notifications/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/Notifications/SignalSubscription_p.h"
#include "Platform/Foundation/Process/NSLog.h"
#include "Platform/Foundation/RunLoop/NSRunLoop.h"
#include "Platform/Foundation/SharedInstance.h"

namespace {

constexpr const char* ObjectPath = "/com/wenmark/velmora5/Notifications";
constexpr const char* InterfaceName = "com.wenmark.velmora5.Notifications";
constexpr const char* SignalName = "Posted";
/// How long a post waits for the bus to have it.
constexpr int AnswerMilliseconds = 2000;

using Variant = LibraryHandle<GVariant, g_variant_unref>;

PropertyList::Dictionary textsOf(PropertyList::Dictionary userInfo) {
  std::erase_if(userInfo, [](const auto& entry) { return entry.second.string() == nullptr; });
  return userInfo;
}

GVariant* signalArguments(std::string_view name, const PropertyList::Dictionary& texts) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
  for (const auto& [key, value] : texts)
    g_variant_builder_add(&builder, "{ss}", key.c_str(), value.string()->c_str());
  return g_variant_new("(sa{ss})", std::string(name).c_str(), &builder);
}

/// Any question to the bus itself: it answers in order, so it then has all that was sent before.
constexpr const char* BusName = "org.freedesktop.DBus";
constexpr const char* BusPath = "/org/freedesktop/DBus";
constexpr const char* BusQuestion = "GetId";

class DBusNotificationCenter : public NSDistributedNotificationCenter, private MessageBusDelegate {
 public:
  DBusNotificationCenter() {
    registration_ = bus_.addDelegate(*this);
    isStarting_ = false;
  }
  ~DBusNotificationCenter() override {
    g_cancellable_cancel(cancellable_);
    g_object_unref(cancellable_);
  }
  DBusNotificationCenter(const DBusNotificationCenter&) = delete;
  DBusNotificationCenter& operator=(const DBusNotificationCenter&) = delete;

  NSObservation addObserver(std::string_view name, NSNotificationHandler handler) override {
    startDesktopWatch(name);
    return local_->addObserver(name, std::move(handler));
  }

  void postNotification(std::string_view name, const PropertyList::Dictionary& userInfo) override {
    PropertyList::Dictionary texts = textsOf(userInfo);
    if (send(name, texts)) return;
    NSRunLoop::mainRunLoop().performBlock(
        [local = local_, name = std::string(name), texts = std::move(texts)] {
          local->postNotification(name, texts);
        });
  }

  void deliver(std::string_view name) override { local_->postNotification(name); }

 private:
  void busConnected(GDBusConnection* connection) override {
    subscription_ = std::make_unique<SignalSubscription>(
        connection, nullptr, InterfaceName, SignalName, ObjectPath, nullptr, received, this);
    if (isStarting_) return;
    // Told when the bus has the subscription, so that nothing falls between the two.
    const auto subscribed = [](GObject* source, GAsyncResult* result, gpointer self) {
      const Variant answer(g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(source),
                                                         result, nullptr));
      if (!answer) return;
      NSRunLoop::guarded([self] {
        static_cast<DBusNotificationCenter*>(self)->deliver(
            NSDistributedNotificationsMayBeMissedNotification);
      });
    };
    g_dbus_connection_call(connection, BusName, BusPath, BusName, BusQuestion, nullptr, nullptr,
                           G_DBUS_CALL_FLAGS_NONE, -1, cancellable_, subscribed, this);
  }

  /// Returns whether the bus has the signal, or may still take it; it then comes back to this
  /// process, too.
  bool send(std::string_view name, const PropertyList::Dictionary& texts) {
    GDBusConnection* connection = bus_.connection();
    if (connection == nullptr ||
        !g_dbus_connection_emit_signal(connection, nullptr, ObjectPath, InterfaceName, SignalName,
                                       signalArguments(name, texts), nullptr)) {
      return false;
    }
    GError* error = nullptr;
    const Variant answer(g_dbus_connection_call_sync(
        connection, BusName, BusPath, BusName, BusQuestion, nullptr, nullptr,
        G_DBUS_CALL_FLAGS_NONE, AnswerMilliseconds, nullptr, &error));
    if (answer) return true;
    const LibraryHandle<GError, g_error_free> owned(error);
    const bool isLate = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
    const bool isRefusal = g_dbus_error_is_remote_error(error);
    if (isLate) {
      NSLog("error: the session bus does not answer, so other processes may not hear of " +
            std::string(name));
    }
    return isLate || isRefusal;
  }

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
      static_cast<DBusNotificationCenter*>(self)->local_->postNotification(name, userInfo);
    });
  }

  /// Held by what waits in the run loop, too.
  const std::shared_ptr<NSNotificationCenter> local_ = std::make_shared<NSNotificationCenter>();
  GCancellable* const cancellable_ = g_cancellable_new();  ///< An answer may come after the end.
  MessageBus& bus_ = MessageBus::sessionBus();
  bool isStarting_ = true;
  std::unique_ptr<SignalSubscription> subscription_;
  Registration registration_;
};

}  // namespace

void NSDistributedNotificationCenter::beginConnecting() { MessageBus::sessionBus(); }

NSDistributedNotificationCenter& NSDistributedNotificationCenter::defaultCenter() {
  static SharedInstance<DBusNotificationCenter> center;
  return center.get();
}
