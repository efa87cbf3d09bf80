#include "Platform/AppKit/TextLine.h"

#include <pango/pangocairo.h>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "Platform/Foundation/NSString.h"

namespace {

struct ObjectDeleter {
  void operator()(gpointer object) const { g_object_unref(object); }
};
using Context = std::unique_ptr<PangoContext, ObjectDeleter>;
using Layout = std::unique_ptr<PangoLayout, ObjectDeleter>;

Context makeContext() {
  Context context(pango_font_map_create_context(pango_cairo_font_map_get_default()));
  cairo_font_options_t* options = cairo_font_options_create();
  // Unhinted advances, so that a width in points is the same at every scale.
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context.get(), options);
  cairo_font_options_destroy(options);
  pango_context_set_round_glyph_positions(context.get(), FALSE);
  return context;
}

PangoFontDescription* makeDescription(const NSFont& font) {
  PangoFontDescription* description = pango_font_description_new();
  pango_font_description_set_family(description, font.familyName().c_str());
  pango_font_description_set_absolute_size(description, font.pointSize() * PANGO_SCALE);
  return description;
}

/// Lays lines out in one context, keeping the last ones: a line is drawn and then measured, and
/// between two seconds most of a clock stays the same.
class LineMaker {
 public:
  PangoContext* context() { return context_.get(); }

  /// Forgets the lines, after a change of the context.
  void forget() { kept_ = {}; }

  PangoLayout* layout(std::string_view text, const NSFont& font) {
    for (Kept& kept : kept_) {
      if (kept.layout && kept.text == text && *kept.font == font) return kept.layout.get();
    }
    Kept& slot = kept_[next_++ % kept_.size()];
    slot.layout.reset(pango_layout_new(context_.get()));
    slot.text = text;
    slot.font = std::make_unique<NSFont>(font);
    PangoFontDescription* description = makeDescription(font);
    pango_layout_set_font_description(slot.layout.get(), description);
    pango_font_description_free(description);
    if (font.hasMonospacedNumbers()) {
      PangoAttrList* attributes = pango_attr_list_new();
      pango_attr_list_insert(attributes, pango_attr_font_features_new("tnum=1"));
      pango_layout_set_attributes(slot.layout.get(), attributes);
      pango_attr_list_unref(attributes);
    }
    pango_layout_set_single_paragraph_mode(slot.layout.get(), TRUE);
    // Made valid here: Pango would log each text that is not.
    const std::string valid = validUtf8(text);
    pango_layout_set_text(slot.layout.get(), valid.data(), static_cast<int>(valid.size()));
    return slot.layout.get();
  }

 private:
  struct Kept {
    std::string text;
    std::unique_ptr<NSFont> font;
    Layout layout;
  };

  Context context_ = makeContext();
  std::array<Kept, 4> kept_;
  size_t next_ = 0;
};

/// Measures at scale 1, whatever is being drawn to.
LineMaker& measuring() {
  static LineMaker maker;
  return maker;
}

/// Lays out for drawing: the glyphs' hints follow the scale of the target.
LineMaker& drawing() {
  static LineMaker maker;
  return maker;
}

}  // namespace

FontHeights fontHeights(const NSFont& font) {
  static std::map<std::pair<std::string, double>, FontHeights> known;
  auto& heights = known[{font.familyName(), font.pointSize()}];
  if (heights.ascender > 0) return heights;
  PangoContext* context = measuring().context();
  PangoFontDescription* description = makeDescription(font);
  PangoFontMetrics* metrics = pango_context_get_metrics(context, description, nullptr);
  pango_font_description_free(description);
  heights = {static_cast<double>(pango_font_metrics_get_ascent(metrics)) / PANGO_SCALE,
             static_cast<double>(pango_font_metrics_get_descent(metrics)) / PANGO_SCALE};
  pango_font_metrics_unref(metrics);
  return heights;
}

double textLineWidth(std::string_view text, const NSFont& font) {
  PangoRectangle logical{};
  pango_layout_line_get_extents(pango_layout_get_line_readonly(measuring().layout(text, font), 0),
                                nullptr, &logical);
  return static_cast<double>(logical.width) / PANGO_SCALE;
}

void showTextLine(_cairo* cairo, std::string_view text, const NSFont& font) {
  LineMaker& maker = drawing();
  // Lines laid out for another scale have their glyphs hinted for it.
  static std::array<double, 4> lastScale;
  cairo_matrix_t matrix;
  cairo_get_matrix(cairo, &matrix);
  std::array<double, 4> scale = {matrix.xx, matrix.yy, 1, 1};
  cairo_surface_get_device_scale(cairo_get_target(cairo), &scale[2], &scale[3]);
  pango_cairo_update_context(cairo, maker.context());
  if (scale != lastScale) maker.forget();
  lastScale = scale;
  cairo_move_to(cairo, 0, 0);
  pango_cairo_show_layout_line(cairo, pango_layout_get_line_readonly(maker.layout(text, font), 0));
}
