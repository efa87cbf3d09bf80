#pragma once

// For the platform's own sources only: signals of a message bus.

#include <gio/gio.h>

#include "Platform/Foundation/LibraryHandle.h"

/// A subscription to a signal, which ends with this object. It may outlive its bus.
class SignalSubscription {
 public:
  SignalSubscription(GDBusConnection* connection, const char* sender, const char* interface,
                     const char* signal, const char* path, const char* firstArgument,
                     GDBusSignalCallback callback, void* context)
      : connection_(static_cast<GDBusConnection*>(g_object_ref(connection))),
        id_(g_dbus_connection_signal_subscribe(connection, sender, interface, signal, path,
                                               firstArgument, G_DBUS_SIGNAL_FLAGS_NONE, callback,
                                               context, nullptr)) {}
  SignalSubscription(const SignalSubscription&) = delete;
  SignalSubscription& operator=(const SignalSubscription&) = delete;
  ~SignalSubscription() { g_dbus_connection_signal_unsubscribe(connection_.get(), id_); }

 private:
  LibraryHandle<GDBusConnection, g_object_unref> connection_;
  guint id_;
};
