#include "Platform/AppKit/Text/NSFont.h"

#include <fontconfig/fontconfig.h>

#include <map>
#include <utility>

#include "Platform/AppKit/Text/TextLine_p.h"

namespace {

bool machineHasFamily(const char* family) {
  FcPattern* pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  FcObjectSet* objects = FcObjectSetBuild(FC_FAMILY, nullptr);
  FcFontSet* found = FcFontList(nullptr, pattern, objects);
  const bool has = found != nullptr && found->nfont > 0;
  if (found != nullptr) FcFontSetDestroy(found);
  FcObjectSetDestroy(objects);
  FcPatternDestroy(pattern);
  return has;
}

const std::string& systemFamily() {
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

}  // namespace

NSFont NSFont::systemFontOfSize(double size, NSFontWeight weight) {
  return NSFont(systemFamily(), size, weight);
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
    family = known.emplace(name, machineHasFamily(std::string(name).c_str())).first;
  }
  if (!family->second) return std::nullopt;
  return NSFont(family->first, size, weight);
}

NSFont NSFont::withMonospacedNumbers() const {
  NSFont font = *this;
  font.monospacedNumbers_ = true;
  return font;
}

double NSFont::ascender() const { return fontHeights(*this).ascender; }

double NSFont::descender() const { return fontHeights(*this).descender; }
