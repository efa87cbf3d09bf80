#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Foundation/Time/NSDate.h"

/// How dates are stored as text: a pattern of the numeric fields of a date in GMT, such as
/// "yyyy-MM-dd HH:mm:ss.SSS". The fields are y, M, d, H, m, s and S; a field's width is its number
/// of letters at least. 3 letters of M, which would be a name, and 2 of y, which would be a year
/// without its century, are none of them. Text between apostrophes and signs that are no letters
/// stand for themselves.
///
/// A value that any thread may use.
class FMDateFormat {
 public:
  /// Null for a pattern with another field in it.
  static std::optional<FMDateFormat> formatWithPattern(std::string_view pattern);

  std::string stringFromDate(const NSDate& date) const;
  /// Null for a text that is not of this form, or no date. Fields that the pattern lacks are those
  /// of 1970-01-01 00:00.
  std::optional<NSDate> dateFromString(std::string_view text) const;

 private:
  /// A run of one letter, or a piece of text.
  struct Piece {
    char field = 0;  ///< 0 for text.
    int width = 0;
    std::string text;
  };

  void addText(char letter);

  std::vector<Piece> pieces_;
};
