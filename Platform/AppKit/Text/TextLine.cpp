#include "Platform/AppKit/Text/TextLine_p.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "Platform/AppKit/Text/ShapedLine_p.h"

namespace {

struct ObjectDeleter {
  void operator()(gpointer object) const { g_object_unref(object); }
};
using Context = std::unique_ptr<PangoContext, ObjectDeleter>;

/// With `hinted`, advances are whole pixels at the scale, so that letters are evenly spaced.
Context makeContext(double scale, bool hinted) {
  Context context(pango_font_map_create_context(pango_cairo_font_map_get_default()));
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_metrics(options,
                                      hinted ? CAIRO_HINT_METRICS_ON : CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context.get(), options);
  cairo_font_options_destroy(options);
  pango_context_set_round_glyph_positions(context.get(), hinted ? TRUE : FALSE);
  PangoMatrix matrix = PANGO_MATRIX_INIT;
  pango_matrix_scale(&matrix, scale, scale);
  pango_context_set_matrix(context.get(), &matrix);
  return context;
}

bool isWhole(double scale) {
  constexpr double Tolerance = 1e-6;
  return scale >= 1 && std::abs(scale - std::round(scale)) < Tolerance;
}

/// The lines at one scale, kept: texts of a panel come again and again.
class KeptLines {
 public:
  explicit KeptLines(double scale) : scale_(scale), context_(makeContext(scale, isWhole(scale))) {}

  double scale() const { return scale_; }

  const ShapedLine& line(std::string_view text, const NSFont& font) {
    if (!font.hasMonospacedNumbers()) return exactLine(text, font);
    const DigitGlyphs* digits = digitsOf(font);
    if (digits == nullptr) return exactLine(text, font);
    std::string pattern(text);
    for (char& character : pattern) {
      if (character >= '0' && character <= '9') character = '0';
    }
    Kept* kept = find(pattern, font);
    if (kept == nullptr) {
      auto shaped = std::make_unique<ShapedLine>(context_.get(), text, font);
      const bool hasDigits = shaped->findDigits(text, *digits);
      kept = &keep(pattern, font, hasDigits ? std::move(shaped) : nullptr);
    }
    if (!kept->line) return exactLine(text, font);
    kept->line->setDigits(text, *digits);
    return *kept->line;
  }

 private:
  struct Kept {
    std::unique_ptr<ShapedLine> line;  ///< Null for a pattern whose digits cannot be exchanged.
    uint64_t lastUse = 0;
  };

  struct Digits {
    std::unique_ptr<ShapedLine> line;  ///< Keeps the font by which digits elsewhere are known.
    std::optional<DigitGlyphs> glyphs;
  };

  /// A dropdown's texts and more.
  static constexpr size_t MaximumKept = 512;

  static std::string keyOf(std::string_view text, const NSFont& font) {
    const double size = font.pointSize();
    std::string key(reinterpret_cast<const char*>(&size), sizeof size);
    key += font.hasMonospacedNumbers() ? 'm' : 'p';
    key += static_cast<char>(font.weight());
    key += font.familyName();
    key += '\0';
    key += text;
    return key;
  }

  Kept* find(std::string_view text, const NSFont& font) {
    const auto found = kept_.find(keyOf(text, font));
    if (found == kept_.end()) return nullptr;
    found->second.lastUse = ++uses_;
    return &found->second;
  }

  Kept& keep(std::string_view text, const NSFont& font, std::unique_ptr<ShapedLine> line) {
    if (kept_.size() >= MaximumKept) forgetOlderHalf();
    return kept_[keyOf(text, font)] = {std::move(line), ++uses_};
  }

  const ShapedLine& exactLine(std::string_view text, const NSFont& font) {
    // Apart from the patterns of digits, which may have the same letters.
    std::string exact = "=";
    exact += text;
    Kept* kept = find(exact, font);
    if (kept == nullptr) {
      kept = &keep(exact, font, std::make_unique<ShapedLine>(context_.get(), text, font));
    }
    return *kept->line;
  }

  void forgetOlderHalf() {
    std::vector<uint64_t> uses;
    for (const auto& [key, kept] : kept_)
      uses.push_back(kept.lastUse);
    const auto middle = uses.begin() + static_cast<ptrdiff_t>(uses.size() / 2);
    std::nth_element(uses.begin(), middle, uses.end());
    std::erase_if(kept_, [&](const auto& entry) { return entry.second.lastUse < *middle; });
  }

  const DigitGlyphs* digitsOf(const NSFont& font) {
    Digits& digits = digits_[{font.familyName(), font.pointSize(), font.weight()}];
    if (!digits.line) {
      digits.line = std::make_unique<ShapedLine>(context_.get(), "0123456789", font);
      digits.glyphs = digits.line->digits();
    }
    return digits.glyphs ? &*digits.glyphs : nullptr;
  }

  double scale_;
  Context context_;
  std::unordered_map<std::string, Kept> kept_;
  std::map<std::tuple<std::string, double, NSFontWeight>, Digits> digits_;
  uint64_t uses_ = 0;
};

KeptLines& linesAt(double scale) {
  /// Two monitors, the scale of measuring and a snapshot.
  constexpr size_t MaximumScales = 4;
  static std::list<KeptLines> scales;
  const auto found =
      std::ranges::find_if(scales, [&](const auto& lines) { return lines.scale() == scale; });
  if (found != scales.end()) {
    scales.splice(scales.begin(), scales, found);
  } else {
    if (scales.size() == MaximumScales) scales.pop_back();
    scales.emplace_front(scale);
  }
  return scales.front();
}

}  // namespace

FontHeights fontHeights(const NSFont& font) {
  static const Context context = makeContext(1, false);
  static std::map<std::tuple<std::string, double, NSFontWeight>, FontHeights> known;
  auto& heights = known[{font.familyName(), font.pointSize(), font.weight()}];
  if (heights.ascender > 0) return heights;
  PangoFontDescription* description = fontDescription(font);
  PangoFontMetrics* metrics = pango_context_get_metrics(context.get(), description, nullptr);
  pango_font_description_free(description);
  heights = {static_cast<double>(pango_font_metrics_get_ascent(metrics)) / PANGO_SCALE,
             static_cast<double>(pango_font_metrics_get_descent(metrics)) / PANGO_SCALE};
  pango_font_metrics_unref(metrics);
  return heights;
}

double textLineWidth(std::string_view text, const NSFont& font) {
  return textLineWidthAtScale(text, font, 1);
}

double textLineWidthAtScale(std::string_view text, const NSFont& font, double scale) {
  return linesAt(scale).line(text, font).width();
}

double scaleOfContext(_cairo* cairo) {
  cairo_matrix_t matrix;
  cairo_get_matrix(cairo, &matrix);
  double deviceX = 1;
  double deviceY = 1;
  cairo_surface_get_device_scale(cairo_get_target(cairo), &deviceX, &deviceY);
  return std::hypot(matrix.xx, matrix.yx) * deviceX;
}

void showTextLine(_cairo* cairo, std::string_view text, const NSFont& font) {
  linesAt(scaleOfContext(cairo)).line(text, font).show(cairo);
}
