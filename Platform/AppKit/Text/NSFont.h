#pragma once

#include <string>

/// A font by family and size in points.
class NSFont {
 public:
  /// The interface font: the first of a list of families, made for interfaces, that the machine
  /// has.
  static NSFont systemFontOfSize(double size);

  const std::string& familyName() const { return *family_; }
  double pointSize() const { return size_; }
  bool hasMonospacedNumbers() const { return hasMonospacedNumbers_; }

  /// The same font with digits of equal width.
  NSFont withMonospacedNumbers() const;

  /// Heights of the line box above and below the baseline, in points, both positive.
  double ascender() const;
  double descender() const;

  friend bool operator==(const NSFont& a, const NSFont& b) {
    return a.size_ == b.size_ && a.hasMonospacedNumbers_ == b.hasMonospacedNumbers_ &&
           *a.family_ == *b.family_;
  }

 private:
  NSFont(const std::string& family, double size) : family_(&family), size_(size) {}

  const std::string* family_;  // One of the family names kept for the process.
  double size_;
  bool hasMonospacedNumbers_ = false;
};
