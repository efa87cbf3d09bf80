#include <gio/gio.h>

#include <memory>

#include "Platform/Foundation/DesktopWatch.h"
#include "Platform/Foundation/NSDistributedNotificationCenter.h"
#include "Platform/Foundation/NSRunLoop.h"
#include "Platform/Foundation/SessionBus.h"
#include "Platform/Foundation/SignalSubscription.h"

namespace {

constexpr const char* ObjectPath = "/com/wenmark/velmora5/Notifications";
constexpr const char* InterfaceName = "com.wenmark.velmora5.Notifications";
constexpr const char* SignalName = "Posted";

struct VariantDeleter {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, VariantDeleter>;

class DBusNotificationCenter : public NSDistributedNotificationCenter {
 public:
  DBusNotificationCenter() : connection_(sessionBus()) {
    if (connection_ == nullptr) return;
    subscription_ = std::make_unique<SignalSubscription>(
        connection_, nullptr, InterfaceName, SignalName, ObjectPath, nullptr, received, this);
  }

  NSObservation addObserver(std::string_view name, NSNotificationHandler handler) override {
    startDesktopWatch(name);
    return local_.addObserver(name, std::move(handler));
  }

  void postNotification(std::string_view name, const PropertyList::Dictionary& userInfo) override {
    if (connection_ == nullptr) {
      PropertyList::Dictionary texts = userInfo;
      std::erase_if(texts, [](const auto& entry) { return entry.second.string() == nullptr; });
      NSRunLoop& loop = NSRunLoop::mainRunLoop();
      loop.scheduleAt(loop.now(), [this, name = std::string(name), texts = std::move(texts)] {
        local_.postNotification(name, texts);
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

  void deliver(std::string_view name) override { local_.postNotification(name); }

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
  GDBusConnection* connection_;
  std::unique_ptr<SignalSubscription> subscription_;
};

}  // namespace

NSDistributedNotificationCenter& NSDistributedNotificationCenter::defaultCenter() {
  static DBusNotificationCenter center;
  return center;
}
