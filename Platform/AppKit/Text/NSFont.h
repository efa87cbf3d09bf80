#pragma once

#include <optional>
#include <string>
#include <string_view>

enum class NSFontWeight { Regular, Medium, Bold };

/// A font by family, weight and size in points.
class NSFont {
 public:
  /// The interface font: the first of a list of families, made for interfaces, that the machine
  /// has.
  static NSFont systemFontOfSize(double size, NSFontWeight weight = NSFontWeight::Regular);

  /// A family, with " Medium" or " Bold" behind it for these weights. Nothing if the machine does
  /// not have that family itself.
  static std::optional<NSFont> fontWithName(std::string_view name, double size);

  const std::string& familyName() const { return *family_; }
  double pointSize() const { return size_; }
  NSFontWeight weight() const { return weight_; }
  bool hasMonospacedNumbers() const { return hasMonospacedNumbers_; }

  /// The same font with digits of equal width.
  NSFont withMonospacedNumbers() const;

  /// Heights of the line box above and below the baseline, in points, both positive.
  double ascender() const;
  double descender() const;

  friend bool operator==(const NSFont& a, const NSFont& b) {
    return a.size_ == b.size_ && a.weight_ == b.weight_ &&
           a.hasMonospacedNumbers_ == b.hasMonospacedNumbers_ && *a.family_ == *b.family_;
  }

 private:
  NSFont(const std::string& family, double size, NSFontWeight weight)
      : family_(&family), size_(size), weight_(weight) {}

  const std::string* family_;  // One of the family names kept for the process.
  double size_;
  NSFontWeight weight_;
  bool hasMonospacedNumbers_ = false;
};
