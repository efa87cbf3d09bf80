#include "Platform/AppKit/Text/NSFont.h"

#include <fontconfig/fontconfig.h>

#include <map>
#include <tuple>
#include <utility>

#include "Platform/AppKit/Text/FontLoading_p.h"
#include "Platform/AppKit/Text/NSFont_p.h"
#include "Platform/AppKit/Text/TextContext_p.h"

namespace {

bool machineHasFamily(const char* family) {
  const LibraryHandle<FcPattern, FcPatternDestroy> pattern(FcPatternCreate());
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  const LibraryHandle<FcObjectSet, FcObjectSetDestroy> objects(
      FcObjectSetBuild(FC_FAMILY, nullptr));
  const LibraryHandle<FcFontSet, FcFontSetDestroy> found(
      FcFontList(nullptr, pattern.get(), objects.get()));
  return found && found->nfont > 0;
}

/// Above and below the baseline, in points, both positive.
struct FontHeights {
  double ascender = 0;
  double descender = 0;
};

const FontHeights& heightsOf(const NSFont& font) {
  static const TextContext context = makeTextContext(1, false);
  static std::map<std::tuple<std::string, double, NSFontWeight>, FontHeights> known;
  auto& heights = known[{font.familyName(), font.pointSize(), font.weight()}];
  if (heights.ascender > 0) return heights;
  const FontDescription description = makeFontDescription(font);
  const LibraryHandle<PangoFontMetrics, pango_font_metrics_unref> metrics(
      pango_context_get_metrics(context.get(), description.get(), nullptr));
  heights = {static_cast<double>(pango_font_metrics_get_ascent(metrics.get())) / PANGO_SCALE,
             static_cast<double>(pango_font_metrics_get_descent(metrics.get())) / PANGO_SCALE};
  return heights;
}

}  // namespace

const std::string& systemFontFamily() {
  static const std::string family = [] {
    // Drawn for interfaces at small sizes, and with tabular digits, best first.
    for (const char* candidate :
         {"Inter", "Cantarell", "Adwaita Sans", "Noto Sans", "Ubuntu", "DejaVu Sans"}) {
      if (machineHasFamily(candidate)) return candidate;
    }
    return "sans-serif";
  }();
  return family;
}

NSFont NSFont::systemFontOfSize(double size, NSFontWeight weight) {
  finishLoadingFonts();
  return NSFont(systemFontFamily(), size, weight);
}

std::optional<NSFont> NSFont::fontWithName(std::string_view name, double size) {
  NSFontWeight weight = NSFontWeight::Regular;
  for (const auto& [suffix, named] :
       {std::pair<std::string_view, NSFontWeight>{" Medium", NSFontWeight::Medium},
        {" Bold", NSFontWeight::Bold}}) {
    if (!name.ends_with(suffix)) continue;
    name.remove_suffix(suffix.size());
    weight = named;
    break;
  }
  // Kept for the process: fonts refer to the name, and asking costs.
  static std::map<std::string, bool, std::less<>> known;
  auto family = known.find(name);
  if (family == known.end()) {
    finishLoadingFonts();
    family = known.emplace(name, machineHasFamily(std::string(name).c_str())).first;
  }
  if (!family->second) return std::nullopt;
  return NSFont(family->first, size, weight);
}

NSFont NSFont::withMonospacedNumbers() const {
  NSFont font = *this;
  font.hasMonospacedNumbers_ = true;
  return font;
}

double NSFont::ascender() const { return heightsOf(*this).ascender; }

double NSFont::descender() const { return heightsOf(*this).descender; }
