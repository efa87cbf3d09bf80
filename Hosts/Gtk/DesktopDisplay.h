#pragma once

/// The way onto the screen that the desktop offers.
enum class DisplayKind { LayerShell, X11 };

/// Connects GTK to the desktop's display. On a Wayland desktop without layer-shell it starts the
/// program anew as an X11 client, with the same `commandLine`. Throws `std::runtime_error` with the
/// reason if there is no display to show a bar on.
DisplayKind openDesktopDisplay(char** commandLine);
