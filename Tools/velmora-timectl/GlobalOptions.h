#pragma once

#include <span>

#include "Tools/velmora-timectl/Arguments.h"

/// The options that stand before the command.
std::span<const OptionSpec> globalOptions();

/// Makes this process see the instant, zone, locale, bar and settings that the options ask for. To
/// be called before anything reads them.
void applyGlobalOptions(const Arguments& arguments);

/// The bar of this process is dark, or light, with normal contrast, whatever the desktop says.
void setMenubarDark(bool isDark);
