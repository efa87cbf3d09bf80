#pragma once

#include "Hosts/Gtk/Options.h"

/// Shows the bar until the process is asked to end. `commandLine` is the program's own. Throws
/// `std::exception` with the reason if the bar cannot be shown, `UsageError` for a monitor that
/// does not exist.
void showMenuBar(const Options& options, char** commandLine);
