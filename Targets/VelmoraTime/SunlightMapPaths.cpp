#include "Targets/VelmoraTime/SunlightMapPaths.h"

#include <algorithm>
#include <cstddef>

#include "Targets/VelmoraTime/SunlightMapTable.h"

SunlightMapPaths_Time::SunlightMapPaths_Time() {
  constexpr size_t DaysInLeapYear = 366;
  paths_.resize(DaysInLeapYear);
  std::ranges::copy(SunlightMapRows, paths_.begin());
}
