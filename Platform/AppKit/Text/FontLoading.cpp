#include "Platform/AppKit/Text/FontLoading.h"

#include <pango/pangocairo.h>

#include <future>

#include "Platform/AppKit/Text/FontLoading_p.h"
#include "Platform/AppKit/Text/NSFont_p.h"
#include "Platform/AppKit/Text/TextContext_p.h"

namespace {

using FontMap = LibraryHandle<PangoFontMap, g_object_unref>;

/// The size in points of most texts in a bar.
constexpr double UsualSize = 13;

FontMap loadFonts() {
  // Before there is a map, which would have a thread of Pango's read all fonts a second time.
  const std::string& family = systemFontFamily();
  FontMap map(pango_cairo_font_map_new());
  const TextContext context = makeTextContext(map.get(), 1, true);
  const FontDescription description(pango_font_description_new());
  pango_font_description_set_family(description.get(), family.c_str());
  pango_font_description_set_absolute_size(description.get(), UsualSize * PANGO_SCALE);
  const LibraryHandle<PangoLayout, g_object_unref> layout(pango_layout_new(context.get()));
  pango_layout_set_font_description(layout.get(), description.get());
  pango_layout_set_text(layout.get(), "0123456789", -1);
  pango_layout_get_line_readonly(layout.get(), 0);
  return map;
}

std::future<FontMap>& loading() {
  static std::future<FontMap> loading;
  return loading;
}

}  // namespace

FontLoading::FontLoading() { loading() = std::async(std::launch::async, loadFonts); }

FontLoading::~FontLoading() { finishLoadingFonts(); }

void finishLoadingFonts() {
  if (!loading().valid()) return;
  const FontMap map = loading().get();
  // Of the main thread; Pango has one for each.
  pango_cairo_font_map_set_default(PANGO_CAIRO_FONT_MAP(map.get()));
}
