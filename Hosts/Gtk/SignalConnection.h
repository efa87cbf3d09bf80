#pragma once

#include <glib-object.h>

#include <type_traits>

#include "Platform/Foundation/NSRunLoop.h"

/// A handler at a GObject's signal. It lasts as long as this handle, which keeps the object.
class SignalConnection {
 public:
  SignalConnection() = default;
  SignalConnection(gpointer instance, const char* signal, GCallback handler, gpointer data);
  SignalConnection(SignalConnection&& other) noexcept;
  SignalConnection& operator=(SignalConnection&& other) noexcept;
  ~SignalConnection();

 private:
  GObject* instance_ = nullptr;
  gulong handler_ = 0;
};

template <auto Method>
struct SignalHandler;

/// Makes the C function for a method: GLib calls it with the sender, the signal's arguments and the
/// object. An exception is reported and gives a zero result, which lets the next handler run.
template <typename Self, typename Result, typename... Arguments,
          Result (Self::*Method)(Arguments...)>
struct SignalHandler<Method> {
  static Result call(gpointer, Arguments... arguments, gpointer self) {
    if constexpr (std::is_void_v<Result>) {
      NSRunLoop::guarded([&] { (static_cast<Self*>(self)->*Method)(arguments...); });
    } else {
      Result result{};
      NSRunLoop::guarded([&] { result = (static_cast<Self*>(self)->*Method)(arguments...); });
      return result;
    }
  }
};

/// Calls `Method` of `object` on each emission.
template <auto Method, typename Self>
[[nodiscard]] SignalConnection connectSignal(gpointer instance, const char* signal, Self* object) {
  return SignalConnection(instance, signal, G_CALLBACK(&SignalHandler<Method>::call), object);
}
