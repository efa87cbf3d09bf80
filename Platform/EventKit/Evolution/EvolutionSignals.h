#pragma once

#include <glib-object.h>

#include <functional>
#include <memory>
#include <vector>

#include "Platform/Foundation/LibraryHandle.h"

template <typename Type>
using ObjectHandle = LibraryHandle<Type, g_object_unref>;

/// Signals that mean that something has changed, whatever their arguments. They come on the main
/// thread; after this has gone none does.
class EvolutionSignals {
 public:
  explicit EvolutionSignals(std::function<void()> changed);
  EvolutionSignals(const EvolutionSignals&) = delete;
  EvolutionSignals& operator=(const EvolutionSignals&) = delete;
  ~EvolutionSignals();

  /// Listens to a signal that has `arguments`, none or one, besides its sender.
  void connect(gpointer object, const char* signal, int arguments);

 private:
  struct Listener;
  struct Connection {
    ObjectHandle<GObject> object;
    gulong number;
  };

  std::shared_ptr<Listener> listener_;
  std::vector<Connection> connections_;
};
