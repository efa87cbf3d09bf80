#pragma once

#include <cstdint>

/// The bar's own theme: 0 on a dark bar, else that of the settings.
int64_t menubarTheme();

/// How opaque graphs in the bar are, 0 to 1.
double menubarGraphOpacity();

/// The bar's skin colour, by its number; the bar's own variant where the styles are separate.
int64_t menubarSkinColor();
