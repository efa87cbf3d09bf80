#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Platform/AppKit/Drawing/NSColor.h"
#include "Platform/AppKit/Text/NSFont.h"
#include "Targets/Shared/Dropdown/StatInterfaceView.h"

/// A section's title in the middle of a band.
class HeaderView_Time : public StatInterfaceView_Time {
 public:
  /// How a title looks, by the family's numbers.
  enum Type : int64_t {
    Section = 0,      ///< Small, on a light band with a rule below.
    MainSection = 1,  ///< The same, with room above.
    Highlighted = 2,  ///< White on the highlight's colours.
  };

  using StatInterfaceView_Time::StatInterfaceView_Time;

  const std::string& title() const { return title_; }
  void setTitle(std::string_view title);
  int64_t type() const { return type_; }
  void setType(int64_t type);

  void drawRect(NSRect rect) override;
  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::StaticText; }
  std::string accessibilityLabel() const override { return title_; }

 private:
  void drawTitle(NSRect rect, const NSFont& font, const NSColor& color) const;

  std::string title_;
  int64_t type_ = Section;
};
