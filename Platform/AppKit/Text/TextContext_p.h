#pragma once

// For the platform's own sources only: what Pango shapes and measures text with.

#include <pango/pango.h>

#include "Platform/Foundation/LibraryHandle.h"

class NSFont;

using TextContext = LibraryHandle<PangoContext, g_object_unref>;

/// With `hinted`, advances are whole pixels at the scale, so that letters are evenly spaced.
TextContext makeTextContext(double scale, bool hinted);
/// The same with other fonts than the main thread's.
TextContext makeTextContext(PangoFontMap* fonts, double scale, bool hinted);

using FontDescription = LibraryHandle<PangoFontDescription, pango_font_description_free>;

FontDescription makeFontDescription(const NSFont& font);
