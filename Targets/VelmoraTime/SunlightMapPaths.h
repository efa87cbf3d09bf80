#pragma once

#include <string_view>
#include <utility>
#include <vector>

/// The table of night outlines behind the light map, one for each day of the year: the whole night
/// side of the Earth at 00:00 UTC, by the true Sun, for the map to slide sideways by the time of
/// day.
///
/// An outline is text: comma-separated numbers in a plane 1024 wide and 512 high, x to the right
/// from longitude -180, y downward from the north pole. First the x and y of the starting point,
/// then for each cubic Bezier segment its end point, its first and its second control point. It is
/// closed by straight segments along the map's sides and along the edge of the pole in darkness:
/// the lower edge for the places 80 to 266, the upper for the others.
class SunlightMapPaths_Time {
 public:
  SunlightMapPaths_Time();

  /// 366 places. The last is empty and never read: day 366 of a leap year takes the place before.
  /// The texts of a new table live as long as the program.
  const std::vector<std::string_view>& paths() const { return paths_; }
  void setPaths(std::vector<std::string_view> paths) { paths_ = std::move(paths); }

 private:
  std::vector<std::string_view> paths_;
};
