#include "Targets/Shared/Dropdown/DropdownTheme.h"

#include <string_view>

#include "Targets/Shared/ZEVPreferences.h"

namespace {

constexpr NSColor rgb(double red, double green, double blue) {
  return NSColor::colorWithDeviceRed(red, green, blue, 1);
}

constexpr NSColor grey(double level) { return NSColor::colorWithDeviceWhite(level, 1); }

// The ratio to white is 2.0 at the upper edge and 2.8 at the lower one, with raised contrast 5.1
// and 7.6 (WCAG 2.2: a text of this size wants 4.5).
constexpr NSColor HighlightTop = rgb(0.482, 0.749, 0.878);
constexpr NSColor HighlightBottom = rgb(0.447, 0.612, 0.859);
constexpr NSColor RaisedHighlightTop = rgb(0.110, 0.455, 0.655);
constexpr NSColor RaisedHighlightBottom = rgb(0.090, 0.330, 0.600);

NSFont fontNamed(std::string_view name, double size, NSFontWeight weight) {
  const auto font = NSFont::fontWithName(name, size);
  return font ? *font : NSFont::systemFontOfSize(size, weight);
}

}  // namespace

NSFont zevNormalFont(double size) { return fontNamed("Helvetica", size, NSFontWeight::Regular); }

NSFont zevLightFont(double size) {
  return fontNamed("Helvetica Neue Light", size, NSFontWeight::Regular);
}

NSFont zevMediumFont(double size) {
  return fontNamed("Helvetica Neue Medium", size, NSFontWeight::Medium);
}

NSFont zevBoldFont(double size) { return fontNamed("Helvetica Bold", size, NSFontWeight::Bold); }

bool dropdownIsDark() { return dropdownTheme() == 1; }

bool dropdownRaisesContrast() {
  const auto* const store = ZEVPreferences_Time::sharedPreferences();
  return store != nullptr && store->increaseContrast();
}

NSColor dropdownBackgroundColor() { return grey(dropdownIsDark() ? 0.16 : 0.98); }

NSColor dropdownValueColor() { return grey(dropdownIsDark() ? 0.788 : 0.247); }

NSColor dropdownLabelColor() {
  if (dropdownRaisesContrast()) return dropdownValueColor();
  return grey(dropdownIsDark() ? 0.58 : 0.49);
}

NSGradient dropdownHighlightGradient() {
  return dropdownRaisesContrast() ? NSGradient(RaisedHighlightTop, RaisedHighlightBottom)
                                  : NSGradient(HighlightTop, HighlightBottom);
}

NSColor dropdownRuleColor() { return grey(dropdownIsDark() ? 0.22 : 0.901); }

NSColor dropdownHeaderTextColor() {
  // On the dark ground the usual one has 5.5 already.
  return dropdownRaisesContrast() && !dropdownIsDark() ? RaisedHighlightBottom : HighlightBottom;
}

NSColor dropdownHeaderRuleColor() { return grey(dropdownIsDark() ? 0.133 : 0.901); }

NSGradient dropdownHeaderGradient() {
  return dropdownIsDark() ? NSGradient(grey(0.141), grey(0.16))
                          : NSGradient(grey(0.952), grey(0.98));
}

NSColor dropdownActionTextColor(bool acts) {
  if (dropdownIsDark()) return grey(acts ? 0.984 : 0.475);
  return acts ? rgb(0.224, 0.22, 0.333) : rgb(0.451, 0.451, 0.502);
}
