#pragma once

#include <cstdint>

#include "Targets/VelmoraTime/Classes/AstronomyArithmetic.h"

/// What a search of one day found. Hours from the day's start.
struct RiseSetSearch {
  bool rises = false;
  bool sets = false;
  double riseHour = 0;
  double setHour = 0;
  bool startsAbove = false;

  bool crosses() const { return rises || sets; }
};

/// Fits a parabola through the samples at -1, 0 and 1: `nz` counts its zeros within that range,
/// `z1` and `z2` are the zeros, `xe` and `ye` the extremum. With one zero in range `z1` is it.
/// Montenbruck & Pfleger, ch. 3 (QUAD).
void quad(double& nz, double& z1, double& z2, double& xe, double& ye, double yMinus, double y0,
          double yPlus);

/// Looks for the zeros of `height(hour)` over hours 0 to 24, by parabolas through three hourly
/// samples. Montenbruck & Pfleger, "Astronomy on the Personal Computer", ch. 3 (SUNSET).
template <typename Height>
RiseSetSearch searchRiseAndSet(Height height) {
  RiseSetSearch search;
  double yMinus = height(0.0);
  search.startsAbove = yMinus > 0;
  for (double hour = 1; hour < 25 && !(search.rises && search.sets); hour += 2) {
    const double y0 = height(hour);
    const double yPlus = height(hour + 1);
    double nz = 0, z1 = 0, z2 = 0, xe = 0, ye = 0;
    quad(nz, z1, z2, xe, ye, yMinus, y0, yPlus);
    if (nz == 1) {
      const bool rises = yMinus < 0;
      (rises ? search.riseHour : search.setHour) = hour + z1;
      (rises ? search.rises : search.sets) = true;
    } else if (nz == 2) {
      // A body that only grazes the threshold within one pass is not announced by it: the hours
      // are kept, and count if another pass has a plain crossing.
      search.riseHour = hour + (ye < 0 ? z2 : z1);
      search.setHour = hour + (ye < 0 ? z1 : z2);
    }
    yMinus = yPlus;
  }
  return search;
}

/// An hour of the zone's day as seconds from 00:00 UTC of its date.
inline int32_t secondsOfEvent(double hour, double zoneHours) {
  return truncatedTo32Bits(truncatedTo32Bits(hour * 3600) - zoneHours * 3600);
}
