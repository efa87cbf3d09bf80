#include "Platform/AppKit/Text/TextLine_p.h"

#include <cairo.h>

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
#include "Platform/AppKit/Text/TextContext_p.h"

namespace {

bool isWhole(double scale) {
  constexpr double Tolerance = 1e-6;
  return scale >= 1 && std::abs(scale - std::round(scale)) < Tolerance;
}

/// The lines at one scale, kept: texts of a panel come again and again.
class KeptLines {
 public:
  explicit KeptLines(double scale)
      : scale_(scale), context_(makeTextContext(scale, isWhole(scale))) {}

  double scale() const { return scale_; }

  const ShapedLine& line(std::string_view text, const NSFont& font) {
    const ShapedLine* const line = lineOfPattern(text, font);
    return line != nullptr ? *line : exactLine(text, font);
  }

  /// The kept line of all texts that differ in digits only. Null where these cannot be exchanged.
  const ShapedLine* lineOfPattern(std::string_view text, const NSFont& font) {
    if (!font.hasMonospacedNumbers()) return nullptr;
    const DigitGlyphs* digits = digitsOf(font);
    if (digits == nullptr) return nullptr;
    std::string pattern(text);
    for (char& character : pattern) {
      if (isTextDigit(character)) character = '0';
    }
    Kept* kept = find(pattern, font);
    if (kept == nullptr) {
      auto shaped = std::make_unique<ShapedLine>(context_.get(), text, font);
      const bool hasDigits = shaped->findDigits(text, *digits);
      kept = &keep(pattern, font, hasDigits ? std::move(shaped) : nullptr);
    }
    if (kept->line) kept->line->setDigits(text, *digits);
    return kept->line.get();
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
  TextContext context_;
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

double textLineWidth(std::string_view text, const NSFont& font) {
  return linesAt(1).line(text, font).width();
}

bool hasExchangeableDigits(std::string_view text, const NSFont& font, double scale) {
  return linesAt(scale).lineOfPattern(text, font) != nullptr;
}

namespace {

/// The pixels of a point in the present user space.
double scaleOf(_cairo* cairo) {
  cairo_matrix_t matrix;
  cairo_get_matrix(cairo, &matrix);
  double deviceX = 1;
  double deviceY = 1;
  cairo_surface_get_device_scale(cairo_get_target(cairo), &deviceX, &deviceY);
  return std::hypot(matrix.xx, matrix.yx) * deviceX;
}

}  // namespace

void showTextLine(_cairo* cairo, std::string_view text, const NSFont& font) {
  linesAt(scaleOf(cairo)).line(text, font).show(cairo);
}

double shownTextLineWidth(_cairo* cairo, std::string_view text, const NSFont& font) {
  return linesAt(scaleOf(cairo)).line(text, font).width();
}
