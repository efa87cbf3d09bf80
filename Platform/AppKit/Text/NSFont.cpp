#include "Platform/AppKit/Text/NSFont.h"

#include <fontconfig/fontconfig.h>

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

NSFont NSFont::systemFontOfSize(double size) { return NSFont(systemFamily(), size); }

NSFont NSFont::withMonospacedNumbers() const {
  NSFont font = *this;
  font.monospacedNumbers_ = true;
  return font;
}

double NSFont::ascender() const { return fontHeights(*this).ascender; }

double NSFont::descender() const { return fontHeights(*this).descender; }
