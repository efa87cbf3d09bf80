#pragma once

#include <cstdint>
#include <vector>

#include "Platform/AppKit/Menus/MenuPanel.h"

/// The pixels of an open menu, with what stands around it: where clear pixels are seen through, a
/// shadow and round corners, else a thin frame only. Only what has changed is drawn anew.
class MenuPicture {
 public:
  /// A part of the picture, in whole pixels from its upper left corner.
  struct Part {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Part&) const = default;
  };

  /// `scale` is pixels a point; place and size of the picture are multiples of `pixelGrid`.
  MenuPicture(double scale, int pixelGrid, bool isComposited)
      : scale_(scale), pixelGrid_(pixelGrid), isComposited_(isComposited) {}

  /// Draws what of the panel has changed; answers whether anything did. `origin` is the desktop
  /// point that pixels are counted from.
  bool render(MenuPanel& panel, NSPoint origin);

  /// Of the picture, counted from the origin.
  const Part& frame() const { return frame_; }
  /// What differs from the picture before; all of it after a change of size.
  const Part& changed() const { return changed_; }
  /// Rows from the top down of premultiplied 0xAARRGGBB.
  const std::vector<uint32_t>& pixels() const { return pixels_; }

 private:
  void drawSurroundings(const NSColor& ground);
  void drawPanel(const MenuPanel& panel, Part part);
  void drawEdge(const NSColor& ground);

  double scale_;
  int pixelGrid_;
  bool isComposited_;
  Part frame_;
  Part panelPart_;  ///< Of the picture.
  Part changed_;
  NSColor ground_ = NSColor::whiteColor();
  std::vector<uint32_t> surroundings_;
  std::vector<uint32_t> pixels_;
};
