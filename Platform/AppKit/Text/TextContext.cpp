#include "Platform/AppKit/Text/TextContext_p.h"

#include <pango/pangocairo.h>

#include "Platform/AppKit/Text/FontLoading_p.h"
#include "Platform/AppKit/Text/NSFont.h"

TextContext makeTextContext(double scale, bool hinted) {
  finishLoadingFonts();
  return makeTextContext(pango_cairo_font_map_get_default(), scale, hinted);
}

TextContext makeTextContext(PangoFontMap* fonts, double scale, bool hinted) {
  TextContext context(pango_font_map_create_context(fonts));
  const LibraryHandle<cairo_font_options_t, cairo_font_options_destroy> options(
      cairo_font_options_create());
  cairo_font_options_set_hint_metrics(options.get(),
                                      hinted ? CAIRO_HINT_METRICS_ON : CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_SLIGHT);
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context.get(), options.get());
  pango_context_set_round_glyph_positions(context.get(), hinted ? TRUE : FALSE);
  PangoMatrix matrix = PANGO_MATRIX_INIT;
  pango_matrix_scale(&matrix, scale, scale);
  pango_context_set_matrix(context.get(), &matrix);
  return context;
}

FontDescription makeFontDescription(const NSFont& font) {
  FontDescription description(pango_font_description_new());
  pango_font_description_set_family(description.get(), font.familyName().c_str());
  pango_font_description_set_absolute_size(description.get(), font.pointSize() * PANGO_SCALE);
  if (font.weight() != NSFontWeight::Regular) {
    pango_font_description_set_weight(description.get(), font.weight() == NSFontWeight::Bold
                                                             ? PANGO_WEIGHT_BOLD
                                                             : PANGO_WEIGHT_MEDIUM);
  }
  return description;
}
