#pragma once

#include "Hosts/Bar/Options.h"

/// Shows the bar until the process is asked to end or its display has gone. Throws `std::exception`
/// with the reason if the bar cannot be shown.
void showMenuBar(const Options& options);
