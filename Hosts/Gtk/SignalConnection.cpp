#include "Hosts/Gtk/SignalConnection.h"

#include <utility>

SignalConnection::SignalConnection(gpointer instance, const char* signal, GCallback handler,
                                   gpointer data)
    : instance_(G_OBJECT(g_object_ref(instance))),
      handler_(g_signal_connect(instance, signal, handler, data)) {}

SignalConnection::SignalConnection(SignalConnection&& other) noexcept
    : instance_(std::exchange(other.instance_, nullptr)), handler_(other.handler_) {}

SignalConnection& SignalConnection::operator=(SignalConnection&& other) noexcept {
  std::swap(instance_, other.instance_);
  std::swap(handler_, other.handler_);
  return *this;
}

SignalConnection::~SignalConnection() {
  if (instance_ == nullptr) return;
  if (g_signal_handler_is_connected(instance_, handler_)) {
    g_signal_handler_disconnect(instance_, handler_);
  }
  g_object_unref(instance_);
}
