#include "Platform/AppKit/Text/ShapedLine_p.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "Platform/AppKit/Text/TextContext_p.h"
#include "Platform/AppKit/Text/TextLine_p.h"
#include "Platform/Foundation/Text/NSString.h"

namespace {

double points(int units) { return static_cast<double>(units) / PANGO_SCALE; }

using Layout = LibraryHandle<PangoLayout, g_object_unref>;

Layout layOut(PangoContext* context, const std::string& text, const NSFont& font) {
  Layout layout(pango_layout_new(context));
  const FontDescription description = makeFontDescription(font);
  pango_layout_set_font_description(layout.get(), description.get());
  if (font.hasMonospacedNumbers()) {
    const LibraryHandle<PangoAttrList, pango_attr_list_unref> attributes(pango_attr_list_new());
    pango_attr_list_insert(attributes.get(), pango_attr_font_features_new("tnum=1"));
    pango_layout_set_attributes(layout.get(), attributes.get());
  }
  pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
  pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
  return layout;
}

}  // namespace

ShapedLine::ShapedLine(PangoContext* context, std::string_view text, const NSFont& font) {
  // Made valid here: Pango would log each text that is not.
  const std::string valid = validUtf8(text);
  const Layout layout = layOut(context, valid, font);
  PangoLayoutLine* line = pango_layout_get_line_readonly(layout.get(), 0);
  double x = 0;
  for (const GSList* item = line->runs; item != nullptr; item = item->next) {
    const auto* run = static_cast<const PangoLayoutRun*>(item->data);
    auto* face = reinterpret_cast<PangoCairoFont*>(run->item->analysis.font);
    cairo_scaled_font_t* scaled = pango_cairo_font_get_scaled_font(face);
    Run& shaped = runs_.emplace_back();
    shaped.font.reset(cairo_scaled_font_reference(scaled));
    for (int index = 0; index < run->glyphs->num_glyphs; ++index) {
      const PangoGlyphInfo& glyph = run->glyphs->glyphs[index];
      const bool isUnknown = (glyph.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0;
      if (glyph.glyph != PANGO_GLYPH_EMPTY) {
        shaped.glyphs.push_back({isUnknown ? 0 : glyph.glyph, x + points(glyph.geometry.x_offset),
                                 points(glyph.geometry.y_offset),
                                 run->item->offset + run->glyphs->log_clusters[index]});
      }
      x += points(glyph.geometry.width);
    }
  }
  width_ = x;
}

void ShapedLine::show(cairo_t* cairo) const {
  std::vector<cairo_glyph_t> glyphs;
  for (const Run& run : runs_) {
    glyphs.clear();
    for (const Glyph& glyph : run.glyphs)
      glyphs.push_back({glyph.index, glyph.x, glyph.y});
    cairo_set_scaled_font(cairo, run.font.get());
    cairo_show_glyphs(cairo, glyphs.data(), static_cast<int>(glyphs.size()));
  }
}

std::optional<DigitGlyphs> ShapedLine::digits() const {
  DigitGlyphs digits;
  if (runs_.size() != 1 || runs_.front().glyphs.size() != digits.glyphs.size()) return {};
  const auto& glyphs = runs_.front().glyphs;
  // All but the first stand one digit's width further.
  const double width = glyphs[1].x - glyphs[0].x;
  for (size_t digit = 0; digit < glyphs.size(); ++digit) {
    constexpr double Tolerance = 1e-3;
    const double place = width * static_cast<double>(digit);
    if (std::abs(glyphs[digit].x - glyphs[0].x - place) > Tolerance) return {};
    digits.glyphs[digit] = glyphs[digit].index;
  }
  digits.font = runs_.front().font.get();
  return digits;
}

bool ShapedLine::findDigits(std::string_view text, const DigitGlyphs& digits) {
  digits_.clear();
  const auto count = static_cast<size_t>(std::ranges::count_if(text, isTextDigit));
  for (size_t run = 0; run < runs_.size(); ++run) {
    for (size_t index = 0; index < runs_[run].glyphs.size(); ++index) {
      const Glyph& glyph = runs_[run].glyphs[index];
      const auto byte = static_cast<size_t>(glyph.byte);
      if (byte >= text.size() || !isTextDigit(text[byte])) continue;
      const bool isPlain = runs_[run].font.get() == digits.font &&
                           glyph.index == digits.glyphs[static_cast<size_t>(text[byte] - '0')];
      if (!isPlain) return false;
      digits_.push_back({run, index, byte});
    }
  }
  return digits_.size() == count;
}

void ShapedLine::setDigits(std::string_view text, const DigitGlyphs& digits) {
  for (const Digit& digit : digits_) {
    runs_[digit.run].glyphs[digit.glyph].index =
        digits.glyphs[static_cast<size_t>(text[digit.byte] - '0')];
  }
}
