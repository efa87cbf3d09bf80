#pragma once

/// A colour in device RGB; every part from 0 to 1.
class NSColor {
 public:
  static constexpr NSColor colorWithDeviceRed(double red, double green, double blue, double alpha) {
    return NSColor(red, green, blue, alpha);
  }
  static constexpr NSColor colorWithDeviceWhite(double white, double alpha) {
    return NSColor(white, white, white, alpha);
  }
  static constexpr NSColor blackColor() { return colorWithDeviceWhite(0, 1); }
  static constexpr NSColor whiteColor() { return colorWithDeviceWhite(1, 1); }

  /// Behind an item whose menu is open; text on it is white.
  static constexpr NSColor selectedMenuItemColor() { return NSColor(0.16, 0.45, 0.87, 1); }

  double redComponent() const { return red_; }
  double greenComponent() const { return green_; }
  double blueComponent() const { return blue_; }
  double alphaComponent() const { return alpha_; }

  /// Makes this the colour that paths are filled with in the current graphics context.
  void setFill() const;

  friend bool operator==(const NSColor&, const NSColor&) = default;

 private:
  constexpr NSColor(double red, double green, double blue, double alpha)
      : red_(red), green_(green), blue_(blue), alpha_(alpha) {}

  double red_;
  double green_;
  double blue_;
  double alpha_;
};
