#pragma once

// For the platform's own sources only: the system's message bus.

#include <gio/gio.h>

/// The connection to the system bus, made at the first call; null where there is none.
GDBusConnection* systemBus();
