#pragma once

// For the platform's own sources only: the session's message bus.

#include <gio/gio.h>

/// The connection to the session bus, made at the first call; null where there is none.
GDBusConnection* sessionBus();
